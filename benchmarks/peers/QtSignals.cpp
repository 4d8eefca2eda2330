#include <benchmarks/CallRuns.h>

#include <QObject>
#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace QuorlBenchmark
{

class Sender : public QObject
{
    Q_OBJECT

signals:
    void changed(const double& value);
};

class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(std::int64_t& count) : count_(count) {}
    void countChange(const double& /*value*/) { ++count_; }

private:
    std::int64_t& count_;
};

namespace
{

template <std::size_t observers>
void BM_Notify(benchmark::State& state)
{
    std::int64_t calls = 0;
    Sender sender;
    std::vector<std::unique_ptr<Receiver>> receivers;
    for (std::size_t left = observers; left > 0; --left)
    {
        receivers.push_back(std::make_unique<Receiver>(calls));
        QObject::connect(&sender, &Sender::changed, receivers.back().get(), &Receiver::countChange,
                         Qt::DirectConnection);
    }
    const double value = 1;
    tellAgain(state, observers, calls, [&] { emit sender.changed(value); });
}

BENCHMARK(BM_Notify<1>)->Name("notify 1 observer/Qt");
BENCHMARK(BM_Notify<10>)->Name("notify 10 observers/Qt");
BENCHMARK(BM_Notify<1000>)->Name("notify 1000 observers/Qt");

} // namespace
} // namespace QuorlBenchmark

#include "QtSignals.moc"
