// Linked only into programs of the sanitizer builds. It keeps libraries loaded: leaks of an unloaded library have no
// name that a suppression could match, and its threads can crash the leak check.
extern "C" int dlclose(void *)
{
    return 0;
}
