// Linked into the sanitizer builds' programs alone. What an unloaded library leaves behind counts as a leak, and under
// no name that a suppression could tell; the threads of one can crash the search for leaks. So none is unloaded.
extern "C" int dlclose(void *)
{
    return 0;
}
