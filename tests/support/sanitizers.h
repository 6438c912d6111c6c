/// Whether the tests are compiled with the address sanitizer: g++ and clang++ each have a way of their own to say so.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define PXK_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PXK_ADDRESS_SANITIZER 1
#endif
#endif
