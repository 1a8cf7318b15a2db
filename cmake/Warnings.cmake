# Strict warnings everywhere; no fused multiply-add behind the written order,
# so float results are the same on every compiler and platform.
add_compile_options(-ffp-contract=off)
if(SPARLANE_SANITIZE)
  add_compile_options(-fsanitize=${SPARLANE_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${SPARLANE_SANITIZE} -fno-sanitize-recover=all)
  # C programs of the C++ library: the sanitizers' checks of C++ objects
  # (vptr) live in their C++ runtime part, which clang links into C programs
  # only on request, and which needs libstdc++.  Sanitized builds only; a
  # plain C host of the library links no C++ runtime.
  if(CMAKE_C_COMPILER_ID MATCHES "Clang")
    add_link_options($<$<LINK_LANGUAGE:C>:-fsanitize-link-c++-runtime>
                     $<$<LINK_LANGUAGE:C>:-lstdc++>)
  endif()
endif()

function(sparlane_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()
