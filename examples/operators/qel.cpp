/// What the operator libraries of a design and their host have agreed on. Every design with libraries brings this one
/// along: a directory that holds it was unpacked completely, and so counts as a cache.
extern "C" [[gnu::visibility("default")]] unsigned int qelInterfaceVersion();

unsigned int qelInterfaceVersion()
{
    return 1;
}
