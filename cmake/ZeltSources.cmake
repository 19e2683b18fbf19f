# Source discovery and per-file instruction-set flags.
#
# Every *.cpp under src/ belongs to the library. A file named *_avx2.cpp is the
# only kind compiled for AVX2, a *_sse41.cpp the only kind compiled for SSE4.1 and
# a *_avx512.cpp the only kind compiled for AVX-512 (F, BW, VL, DQ); vector files
# live in the x86/ folder of their family. Everything else is built for the x86-64
# baseline (SSE2). src/core/testing.cpp holds the test hooks and goes into the
# static twin only.

file(GLOB_RECURSE ZELT_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/src/*.cpp)
list(FILTER ZELT_SOURCES EXCLUDE REGEX "/core/testing\\.cpp$")

set(ZELT_X86 OFF)
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|amd64|i[3-6]86|x86)$")
  set(ZELT_X86 ON)
endif()

foreach(src IN LISTS ZELT_SOURCES)
  if(src MATCHES "_avx2\\.cpp$" AND ZELT_X86)
    if(MSVC)
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "/arch:AVX2")
    else()
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mavx2")
    endif()
  elseif(src MATCHES "_avx512\\.cpp$" AND ZELT_X86)
    if(MSVC)
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "/arch:AVX512")
    else()
      set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-mavx512f;-mavx512bw;-mavx512vl;-mavx512dq")
    endif()
  elseif(src MATCHES "_sse41\\.cpp$" AND ZELT_X86 AND NOT MSVC)
    set_source_files_properties(${src} PROPERTIES COMPILE_OPTIONS "-msse4.1")
  endif()
endforeach()

function(zelt_warnings target)
  if(MSVC)
    target_compile_options(${target} PRIVATE /W4)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wundef -Wno-unused-parameter)
  endif()
endfunction()

# Every ZELT_API name of the public headers, sorted.
function(zelt_public_names outvar)
  file(GLOB headers ${CMAKE_CURRENT_SOURCE_DIR}/include/zelt/*.h)
  set(names "")
  foreach(h IN LISTS headers)
    file(STRINGS ${h} lines REGEX "^ZELT_API ")
    foreach(l IN LISTS lines)
      string(REGEX MATCH "([A-Za-z_][A-Za-z0-9_]*)[ ]*\\(" m "${l}")
      if(m)
        list(APPEND names ${CMAKE_MATCH_1})
      endif()
    endforeach()
  endforeach()
  list(SORT names)
  list(REMOVE_DUPLICATES names)
  set(${outvar} ${names} PARENT_SCOPE)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${headers})
endfunction()

# Module-definition file (Windows) exporting exactly the public names.
function(zelt_generate_def out)
  zelt_public_names(names)
  string(REPLACE ";" "\n    " body "${names}")
  file(WRITE ${out} "LIBRARY zelt\nEXPORTS\n    ${body}\n")
endfunction()

# ELF version script: the public names global, everything else local (this also
# keeps template instantiations of the standard library out of the export table).
function(zelt_generate_version_script out)
  zelt_public_names(names)
  string(REPLACE ";" ";\n    " body "${names}")
  file(WRITE ${out} "ZELT_0 {\n  global:\n    ${body};\n  local: *;\n};\n")
endfunction()
