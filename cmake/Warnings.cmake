# Strict warnings everywhere; no fused multiply-add behind the written order,
# so float results are the same on every compiler and platform.
add_compile_options(-ffp-contract=off)
if(SPARLANE_SANITIZE)
  add_compile_options(-fsanitize=${SPARLANE_SANITIZE} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${SPARLANE_SANITIZE} -fno-sanitize-recover=all)
endif()

function(sparlane_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()
