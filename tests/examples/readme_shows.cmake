# README shows each example file as it is, so what readers copy is what the
# tests build and run.
# Usage: cmake -DREADME=<README.md> -DEXAMPLES="<file>;<file>" -P readme_shows.cmake
file(READ "${README}" readme)
foreach(example ${EXAMPLES})
  file(READ "${example}" text)
  string(FIND "${readme}" "${text}" at)
  if(at EQUAL -1)
    message(FATAL_ERROR "README.md does not show ${example} as it is")
  endif()
endforeach()
message(STATUS "README.md shows every example as it is")
