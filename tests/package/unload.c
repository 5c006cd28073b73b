/* Loads a shared library, unloads it, and checks that it is really gone:
   a library with unique symbols stays mapped after dlclose. */
#include <dlfcn.h>
#include <stdio.h>

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: unload LIBRARY\n");
        return 2;
    }
    void* handle = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL);
    if (!handle) {
        fprintf(stderr, "dlopen: %s\n", dlerror());
        return 1;
    }
    if (dlclose(handle) != 0) {
        fprintf(stderr, "dlclose: %s\n", dlerror());
        return 1;
    }
    if (dlopen(argv[1], RTLD_NOW | RTLD_NOLOAD)) {
        fprintf(stderr, "%s is still loaded after dlclose\n", argv[1]);
        return 1;
    }
    return 0;
}
