# What an attacker would have to get past in the built files. `script/check hardening` looks at them.
#
# Linux: a guard in the stack of every function with a buffer, stack pages touched one by one, copies
# into known buffers checked by the C library, addresses that change from start to start, tables of
# the linker that cannot be written once the program runs, no stack that can be run, and marks for
# indirect jumps and returns where the processor checks them. Windows: data that cannot be run and
# addresses that change, of 64 bits in all their width (the linker's defaults, written out).
#
# The sanitizers have their own guards, which these would hide. What is counted for the tests ships
# nowhere.
if(LORIMAT_SANITIZE OR LORIMAT_SANITIZE_THREADS OR LORIMAT_FUZZ OR LORIMAT_COVERAGE)
  return()
endif()

if(WIN32)
  add_link_options(-Wl,--nxcompat -Wl,--dynamicbase)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_link_options(-Wl,--high-entropy-va)
  endif()
  return()
endif()

include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()

foreach(flag IN ITEMS -fstack-protector-strong -fstack-clash-protection -fcf-protection=full)
  string(MAKE_C_IDENTIFIER "LORIMAT_HAS${flag}" has)
  check_cxx_compiler_flag(${flag} ${has})
  if(${has})
    add_compile_options(${flag})
  endif()
endforeach()
# The C library checks only what is optimised.
add_compile_options($<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>
                    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)

add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
# All code that is linked in keeps returns whole, but Debian's crti.o does not say so, and without
# this the linker takes the mark away. That of indirect jumps goes: crti.o's functions lack theirs.
if(LORIMAT_HAS_fcf_protection_full AND CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
  add_link_options(-Wl,-z,shstk)
endif()
