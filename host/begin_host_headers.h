// Opens a block of the host's headers; host/end_host_headers.h closes it. Warnings are off between the two,
// and the macros min and max are restored afterwards. No include guard: every block has its own pair.

#include <windows.h>

#pragma push_macro("min")
#pragma push_macro("max")

#if defined(_MSC_VER)
#pragma warning(push, 0)
#elif defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wundef"
#pragma GCC diagnostic ignored "-Wshadow"
#pragma GCC diagnostic ignored "-Wunused-parameter"
#pragma GCC diagnostic ignored "-Woverloaded-virtual"
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif
