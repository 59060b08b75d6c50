// Builds under the address sanitizer only: keeps leaks of libraries out of the reports, and those alone.
#ifdef KV_SANITIZE

/// Keeps every loaded module in place, so that a driver's allocations can be told by the driver's name at exit.
extern "C" int dlclose(void *)
{
    return 0;
}

/// The software driver and its loaders keep a few hundred bytes a context to the end of the process, the sound device
/// its connection to the host's messages; the sound files' library loses what it began to read of a damaged Ogg file.
extern "C" const char *__lsan_default_suppressions()
{
    return "leak:swrast_dri.so\n"
           "leak:libepoxy.so\n"
           "leak:libEGL_mesa.so\n"
           "leak:libEGL.so\n"
           "leak:libdbus-1.so\n"
           "leak:vorbis_info_init\n";
}

#endif
