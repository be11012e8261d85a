# Runs after cpack. In packages of symbols it lists the sums of files by where they lay in the build; a reader of the
# package wants them as they are installed, and the same package whoever built it.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  if(package MATCHES "\\.ddeb$")
    execute_process(COMMAND mktemp -d OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    execute_process(COMMAND dpkg-deb --raw-extract ${package} ${folder}/package COMMAND_ERROR_IS_FATAL ANY)
    file(READ ${folder}/package/DEBIAN/md5sums sums)
    string(REGEX REPLACE "  /[^\n]*/(usr/lib/debug/)" "  \\1" sums "${sums}")
    file(WRITE ${folder}/package/DEBIAN/md5sums "${sums}")
    execute_process(COMMAND dpkg-deb --root-owner-group -Zgzip --build ${folder}/package ${package}
      OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
    file(REMOVE_RECURSE ${folder})
  endif()
endforeach()
