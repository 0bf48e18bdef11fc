# How all our code is compiled: language level, warnings, sanitizers, hardening. Two interface
# targets carry it and are linked privately, so that nothing leaks to a host application.

include(CheckPIESupported)
check_pie_supported()

# Tests are compiled for a quick build; what they test keeps the preset's optimisation.
set(is_test $<BOOL:$<TARGET_PROPERTY:ZANDREL_IS_TEST>>)

add_library(zandrel_options INTERFACE)
target_compile_features(zandrel_options INTERFACE cxx_std_20)
target_compile_options(zandrel_options INTERFACE
    $<${is_test}:-O0>
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast
    # GCC 12 takes the sum of a literal and a string for overlapping copies (its bug 105651).
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
    $<$<BOOL:${ZANDREL_WARNINGS_AS_ERRORS}>:-Werror>)

# The layers without Qt are checked for silent number conversions too; Qt's own headers and
# interfaces use them too freely for the upper layers.
add_library(zandrel_strict INTERFACE)
target_link_libraries(zandrel_strict INTERFACE zandrel_options)
target_compile_options(zandrel_strict INTERFACE -Wconversion)

if(ZANDREL_SANITIZE)
    set(sanitize_flags -fsanitize=${ZANDREL_SANITIZE} -fno-omit-frame-pointer
        -fno-sanitize-recover=all)
    target_compile_options(zandrel_options INTERFACE ${sanitize_flags})
    target_link_options(zandrel_options INTERFACE ${sanitize_flags})
endif()

if(ZANDREL_BUILD_FUZZERS)
    # Coverage of the libraries guides the fuzzer.
    target_compile_options(zandrel_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(ZANDREL_COVERAGE)
    target_compile_options(zandrel_options INTERFACE --coverage)
    target_link_options(zandrel_options INTERFACE --coverage)
endif()

# Hardening of release binaries. The sanitizers bring checks of their own.
if(NOT ZANDREL_SANITIZE)
    target_compile_options(zandrel_options INTERFACE
        -fstack-protector-strong
        $<$<AND:$<CONFIG:Release>,$<NOT:${is_test}>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
    target_link_options(zandrel_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
endif()
