# Run by cpack on the package. cpack takes every folder in /usr/lib for one that the loader searches
# and adds scripts that call ldconfig. These libraries are private: the scripts go again.
foreach(package IN LISTS CPACK_PACKAGE_FILES)
  set(tree "${package}.tree")
  execute_process(COMMAND dpkg-deb --raw-extract "${package}" "${tree}" COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE "${tree}/DEBIAN/postinst" "${tree}/DEBIAN/postrm")
  file(CHMOD "${tree}/DEBIAN" PERMISSIONS
       OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  execute_process(COMMAND dpkg-deb --root-owner-group --build "${tree}" "${package}"
                  OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  file(REMOVE_RECURSE "${tree}")
endforeach()
