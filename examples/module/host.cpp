#include <quorl/quorl.h>

#include <cstdio>
#include <string>

/// Loads the modules of a folder, makes an object by a creator of one of them, and asks it.
int main(int argc, char** argv)
{
    using namespace Quorl;
    if (argc != 2 || openModules(argv[1]) == 0) return 2;

    const RefPtr<VCreatorBase> creator = findCreator("Example/Summit");
    if (!creator) return 1;
    const RefPtr<VObject> summit = creator->create("summit", Tolmen::Intercube());
    const RefPtr<ValuePool> alps(new ValuePool("alps"));
    if (!setText(*summit, "left", "4806", alps) || !setText(*summit, "right", "4634", alps))
        return 1;

    VRequest request(alps, false);
    summit->init_request(request, 1.0);
    const string highest = summit->getOutput("highest")->getValueBase(alps)->Text();
    std::printf("The highest is %s m.\n", highest.c_str());
    summit->remove();
    return highest == "4806" ? 0 : 1;
}
