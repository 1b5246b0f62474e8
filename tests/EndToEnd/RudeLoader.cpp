#include <QCoreApplication>

#include <dlfcn.h>

#include <cstdio>
#include <thread>

// A host that loads its plugin, and the library with it, on a thread that ends, and lets go of it
// while the library is at work: rude-loader PLUGIN
int main(int argc, char **argv) {
    QCoreApplication application(argc, argv);
    void *plugin = nullptr;
    std::thread([&] { plugin = dlopen(argv[1], RTLD_NOW); }).join();
    if (!plugin) {
        std::puts(dlerror());
        return 2;
    }
    const int code = reinterpret_cast<int (*)()>(dlsym(plugin, "runPlugin"))();
    dlclose(plugin);
    return code;
}
