// Closes what host/begin_host_headers.h opened.

#if defined(_MSC_VER)
#pragma warning(pop)
#elif defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

// Not every compiler's pop takes away a macro that was not defined at the push.
#undef min
#undef max
#pragma pop_macro("max")
#pragma pop_macro("min")
