#include <benchmarks/NetworkRuns.h>
#include <benchmarks/Topology.h>

#include <benchmark/benchmark.h>
#include <vtkAlgorithm.h>
#include <vtkAlgorithmOutput.h>
#include <vtkDataObject.h>
#include <vtkDemandDrivenPipeline.h>
#include <vtkExecutive.h>
#include <vtkInformation.h>
#include <vtkInformationVector.h>
#include <vtkObjectFactory.h>
#include <vtkSmartPointer.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace QuorlBenchmark
{
namespace
{

/// What is passed on is a number, lest data be what costs.
class Number : public vtkDataObject
{
public:
    static Number* New();
    vtkTypeMacro(Number, vtkDataObject);

    double datum = 0;
};

vtkStandardNewMacro(Number);

/// A filter whose output is one more than the sum of its inputs, or of a number of its own if it
/// has none.
class Adder : public vtkAlgorithm
{
public:
    static Adder* New();
    vtkTypeMacro(Adder, vtkAlgorithm);
    vtkSetMacro(Leaf, double);

    double datum() { return static_cast<Number*>(GetExecutive()->GetOutputData(0))->datum; }

    std::int64_t updates = 0;

protected:
    Adder()
    {
        SetNumberOfInputPorts(1);
        SetNumberOfOutputPorts(1);
    }

    vtkTypeBool ProcessRequest(vtkInformation* request, vtkInformationVector** inputs,
                               vtkInformationVector* outputs) override
    {
        if (request->Has(vtkDemandDrivenPipeline::REQUEST_DATA_OBJECT()))
            return makeOutput(outputs);
        if (request->Has(vtkDemandDrivenPipeline::REQUEST_DATA())) return add(inputs, outputs);
        return vtkAlgorithm::ProcessRequest(request, inputs, outputs);
    }

    int FillInputPortInformation(int /*port*/, vtkInformation* information) override
    {
        information->Set(INPUT_REQUIRED_DATA_TYPE(), "vtkDataObject");
        information->Set(INPUT_IS_REPEATABLE(), 1);
        information->Set(INPUT_IS_OPTIONAL(), 1);
        return 1;
    }

    int FillOutputPortInformation(int /*port*/, vtkInformation* information) override
    {
        information->Set(vtkDataObject::DATA_TYPE_NAME(), "vtkDataObject");
        return 1;
    }

private:
    static int makeOutput(vtkInformationVector* outputs)
    {
        vtkInformation* const output = outputs->GetInformationObject(0);
        if (!output->Has(vtkDataObject::DATA_OBJECT()))
            output->Set(vtkDataObject::DATA_OBJECT(), vtkSmartPointer<Number>::New());
        return 1;
    }

    int add(vtkInformationVector** inputs, vtkInformationVector* outputs)
    {
        ++updates;
        double sum = 1 + Leaf;
        for (int place = 0; place < inputs[0]->GetNumberOfInformationObjects(); ++place)
            sum += numberIn(inputs[0]->GetInformationObject(place)).datum;
        numberIn(outputs->GetInformationObject(0)).datum = sum;
        return 1;
    }

    static Number& numberIn(vtkInformation* information)
    {
        return *static_cast<Number*>(information->Get(vtkDataObject::DATA_OBJECT()));
    }

    double Leaf = 0;
};

vtkStandardNewMacro(Adder);

class VtkNetwork
{
public:
    explicit VtkNetwork(const Topology& shape)
    {
        filters_.reserve(shape.objects());
        for (const auto& sources : shape.inputs)
        {
            auto& filter = filters_.emplace_back(vtkSmartPointer<Adder>::New());
            for (const std::size_t source : sources)
                filter->AddInputConnection(filters_[source]->GetOutputPort());
            filter->GetOutputPort(); // makes the executive, without which it is not whole
        }
    }

    VtkNetwork(const VtkNetwork&) = delete;
    VtkNetwork& operator=(const VtkNetwork&) = delete;

    /// Takes the network apart from its sources on: whenever a filter is let go, circles of
    /// references are looked for in all that is behind it, which takes minutes in a large network.
    ~VtkNetwork()
    {
        for (const auto& filter : filters_) filter->RemoveAllInputConnections(0);
    }

    void request() { filters_.back()->Update(); }
    void setLeaf(double datum) { filters_.front()->SetLeaf(datum); }

    double result()
    {
        request();
        return filters_.back()->datum();
    }

    std::int64_t updates() const
    {
        std::int64_t sum = 0;
        for (const auto& filter : filters_) sum += filter->updates;
        return sum;
    }

private:
    std::vector<vtkSmartPointer<Adder>> filters_;
};

BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::chain, 1000>)->Name("walk chain of 1000/VTK");
BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::fanIn, 1000>)->Name("walk fan-in of 1000/VTK");
BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::binaryTree, 2047>)
    ->Name("walk binary tree of 2047/VTK");
BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::chains, 100, 1000>)
    ->Name("walk 100 chains of 1000/VTK");

// It takes every path, so that 100 layers would not come to an end.
BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::layers, 4, 10>)
    ->Name("walk 4 layers of 10/VTK");
BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::layers, 8, 10>)
    ->Name("walk 8 layers of 10/VTK");
BENCHMARK(BM_RequestUnchanged<VtkNetwork, &Topology::layers, 12, 10>)
    ->Name("walk 12 layers of 10/VTK")
    ->Iterations(1);

BENCHMARK(BM_ChangeLeaf<VtkNetwork, &Topology::chain, 1000>)
    ->Name("change chain of 1000/VTK")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_ChangeLeaf<VtkNetwork, &Topology::chains, 100, 1000>)
    ->Name("change 100 chains of 1000/VTK")
    ->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_SetLeaf<VtkNetwork, 999>)->Name("set a typed value, chain of 1000/VTK");
BENCHMARK(BM_SetLeaf<VtkNetwork, 0>)->Name("set a typed value, one object/VTK");
BENCHMARK(BM_BytesOfObject<VtkNetwork>)->Name("bytes of an object/VTK")->Iterations(1);
BENCHMARK(BM_BytesOfConnection<VtkNetwork>)->Name("bytes of a connection/VTK")->Iterations(1);

} // namespace
} // namespace QuorlBenchmark
