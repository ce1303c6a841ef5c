# What a package of Debian has beyond what CMake installs. Runs for each component's folder before
# CPack makes its package of it.
string(TIMESTAMP day "%a, %d %b %Y %H:%M:%S +0000" UTC)
find_program(gzip gzip REQUIRED)

# compress(FILE...): as Debian does, without name and time.
function(compress)
  if(ARGN)
    execute_process(COMMAND ${gzip} -9nf ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
  endif()
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} key)
  set(package ${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr/share)
  set(here ${CPACK_LORIMAT_SOURCE_DIR}/cmake/debian)
  # Its words are in the copyright file.
  file(GLOB licences ${share}/doc/*/LICENSE)
  if(licences)
    file(REMOVE ${licences})
    foreach(licence IN LISTS licences)
      cmake_path(GET licence PARENT_PATH folder)
      file(GLOB rest ${folder}/*)
      if(NOT rest)
        file(REMOVE_RECURSE ${folder})
      endif()
    endforeach()
  endif()
  file(READ ${CPACK_LORIMAT_SOURCE_DIR}/LICENSE licence)
  string(REGEX REPLACE "^MIT License\n+(Copyright[^\n]*)\n+" "" licence "${licence}")
  set(copyright ${CMAKE_MATCH_1})
  string(STRIP "${licence}" licence)
  string(REPLACE "\n\n" "\n.\n" licence "${licence}")
  string(REPLACE "\n" "\n " licence "${licence}")
  string(REGEX REPLACE "^Copyright \\(c\\) " "" copyright "${copyright}")
  file(WRITE ${share}/doc/${package}/copyright
"Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: liblorimatrt

Files: *
Copyright: ${copyright}
License: Expat
 ${licence}
")
  file(WRITE ${share}/doc/${package}/changelog
"lorimat (${CPACK_PACKAGE_VERSION}) bookworm; urgency=medium

  * Version ${CPACK_PACKAGE_VERSION}; CHANGELOG.md of liblorimatrt-dev tells what changes.

 -- ${CPACK_PACKAGE_CONTACT}  ${day}
")
  compress(${share}/doc/${package}/changelog)
  file(GLOB_RECURSE pages ${share}/man/*.1)
  compress(${pages})
  set(overrides)
  if(EXISTS ${here}/${package}.lintian-overrides)
    file(READ ${here}/${package}.lintian-overrides overrides)
  endif()
  if(CPACK_DEBIAN_${key}_PACKAGE_SECTION STREQUAL libs)
    # CPack cannot be told to leave that out; the trigger does the same, once for all packages.
    string(APPEND overrides
"# The tool that packs writes these two by itself, beside the trigger that the package has.
${package}: maintscript-calls-ldconfig [postinst]
${package}: maintscript-calls-ldconfig [postrm]
")
  endif()
  if(overrides)
    file(WRITE ${share}/lintian/overrides/${package} "${overrides}")
  endif()
endforeach()
