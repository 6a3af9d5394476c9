// Closes the block that host/begin_host_headers.h opens.

#if defined(_MSC_VER)
#pragma warning(pop)
#elif defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

// Some compilers' pop_macro keeps a macro that was not defined at the push.
#undef min
#undef max
#pragma pop_macro("max")
#pragma pop_macro("min")
