# Debian packages: `cpack` in a build made with the preset package. The maintainer scripts are debhelper's, the manual
# pages help2man's, the completion prb's own.
foreach(tool IN ITEMS help2man dh_installdeb)
  find_program(PR_${tool} ${tool})
  if(NOT PR_${tool})
    message(FATAL_ERROR "PR_BUILD_PACKAGES needs ${tool}: tools/setup/install-dependencies.sh packages installs it")
  endif()
endforeach()
if(NOT CMAKE_INSTALL_PREFIX STREQUAL "/usr" OR NOT TARGET prb)
  message(FATAL_ERROR "PR_BUILD_PACKAGES needs PR_BUILD_TOOLS and CMAKE_INSTALL_PREFIX=/usr; the preset package has both")
endif()

# Every time in a package: the same sources make the same bytes.
set(date $ENV{SOURCE_DATE_EPOCH})
if(NOT date)
  execute_process(COMMAND git -C ${PROJECT_SOURCE_DIR} log -1 --format=%ct
    OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
endif()
set(version ${PROJECT_VERSION}-1)
execute_process(COMMAND date --utc --rfc-email --date=@${date}
  OUTPUT_VARIABLE date_text OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(maintainer "Production rules maintainers <maintainers@productionrules.invalid>")

# component  package  the first line of the description
set(rows
  "service\;productionrules\;automatic camera director of a meeting room (service)"
  "library\;libproductionrules0\;automatic camera director of a meeting room (library)"
  "development\;libproductionrules-dev\;automatic camera director of a meeting room (to port it)"
  "tools\;productionrules-tools\;automatic camera director of a meeting room (tools)")
set(service_text "The daemon reads on an MQTT bus what a vision pipeline sees, and says how the\nroom is to be shown.")
set(library_text "The service on the backends of Linux, which the daemon loads.")
set(development_text "Headers, and the service without a device, for a port to another device.")
set(tools_text "prb replays, measures, makes and watches what the service sees and decides;\nit has the viewer page in it.")
if(TARGET prb-camera)
  list(APPEND rows "video\;productionrules-video\;automatic camera director of a meeting room (video)")
  set(video_text "prb-vision sees people in real video, prb-camera shows what is decided.")
endif()

# What debhelper makes of the unit, the user and the files beneath /etc.
set(work ${CMAKE_CURRENT_BINARY_DIR}/debhelper)
set(staged ${work}/debian/productionrules)
file(REMOVE_RECURSE ${work})
set(conf ${PROJECT_SOURCE_DIR}/conf)
configure_file(${conf}/systemd/productionrulesd.service ${staged}/lib/systemd/system/productionrulesd.service COPYONLY)
configure_file(${conf}/sysusers.d/productionrules.conf ${staged}/usr/lib/sysusers.d/productionrules.conf COPYONLY)
configure_file(${conf}/recommended.conf ${staged}/etc/fyn.conf COPYONLY)
configure_file(${conf}/default/productionrulesd ${staged}/etc/default/productionrulesd COPYONLY)
configure_file(postrm ${work}/debian/productionrules.postrm COPYONLY)
file(WRITE ${work}/debian/control "Source: productionrules\nMaintainer: ${maintainer}\nBuild-Depends: debhelper-compat (= 13)\n\n"
  "Package: productionrules\nArchitecture: any\nDescription: service\n")
file(WRITE ${work}/debian/changelog "productionrules (${version}) unstable; urgency=medium\n\n"
  "  * What changed is told in changelog.gz.\n\n -- ${maintainer}  ${date_text}\n")
foreach(step IN ITEMS dh_installsysusers dh_installsystemd dh_installdeb)
  execute_process(COMMAND ${step} WORKING_DIRECTORY ${work} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
file(GLOB scripts ${staged}/DEBIAN/*)
set(CPACK_DEBIAN_SERVICE_PACKAGE_CONTROL_EXTRA ${scripts})
file(WRITE ${work}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${work}/triggers)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
install(DIRECTORY ${staged}/etc/ DESTINATION /etc COMPONENT service)

# package_files.sh makes the rest of each package; manual pages and completion come from its programs.
set(programs_service productionrulesd)
set(programs_tools prb)
set(programs_video prb-camera prb-vision)
set(CPACK_COMPONENTS_ALL)
foreach(row IN LISTS rows)
  list(GET row 0 component)
  list(GET row 1 package)
  list(GET row 2 summary)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(made ${CMAKE_CURRENT_BINARY_DIR}/made/${component})
  list(TRANSFORM programs_${component} REPLACE "(.+)" "$<TARGET_FILE:\\1>" OUTPUT_VARIABLE files)
  add_custom_command(OUTPUT ${made}.stamp
    COMMAND ${CMAKE_COMMAND} -E rm -rf ${made}
    COMMAND ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=${date} LC_ALL=C
      ${CMAKE_CURRENT_SOURCE_DIR}/package_files.sh ${made} ${package} ${work}/debian/changelog ${files}
    COMMAND ${CMAKE_COMMAND} -E touch ${made}.stamp
    DEPENDS package_files.sh copyright copyright-video ${PROJECT_SOURCE_DIR}/CHANGELOG.md ${programs_${component}})
  list(APPEND stamps ${made}.stamp)
  install(DIRECTORY ${made}/ DESTINATION . COMPONENT ${component})
  string(TOUPPER ${component} upper)
  set(CPACK_DEBIAN_${upper}_PACKAGE_NAME ${package})
  set(CPACK_COMPONENT_${upper}_DESCRIPTION "${summary}\n${${component}_text}")
  set(CPACK_DEBIAN_${upper}_PACKAGE_SECTION misc)
endforeach()
add_custom_target(package_files ALL DEPENDS ${stamps})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)

# The daemon loads its library, so no tool sees that it needs it.
set(CPACK_DEBIAN_SERVICE_PACKAGE_DEPENDS "libproductionrules0 (= ${version}), systemd | systemd-sysusers")
set(CPACK_DEBIAN_SERVICE_PACKAGE_RECOMMENDS "dbus")
set(CPACK_DEBIAN_SERVICE_PACKAGE_SUGGESTS "mosquitto, productionrules-tools")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "libproductionrules0 (= ${version})")
if(PR_WITH_SIMDJSON)
  string(APPEND CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ", libsimdjson-dev")
endif()
set(CPACK_DEBIAN_VIDEO_PACKAGE_DEPENDS "ffmpeg")
set(CPACK_DEBIAN_VIDEO_PACKAGE_RECOMMENDS "opencv-data")
set(CPACK_DEBIAN_VIDEO_PACKAGE_SUGGESTS "gstreamer1.0-pipewire, gstreamer1.0-plugins-base, gstreamer1.0-tools")
# Symbols go into packages of their own; those of an archive are of no use to who links it.
install(CODE "execute_process(COMMAND ${CMAKE_STRIP} --strip-debug --enable-deterministic-archives
  \$ENV{DESTDIR}/usr/${CMAKE_INSTALL_LIBDIR}/libproductionrules-port.a COMMAND_ERROR_IS_FATAL ANY)" COMPONENT development)
foreach(component IN ITEMS SERVICE LIBRARY TOOLS VIDEO)
  set(CPACK_DEBIAN_${component}_DEBUGINFO_PACKAGE ON)
endforeach()
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${maintainer}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_BINARY_DIR}/date.cmake)
file(WRITE ${CPACK_PROJECT_CONFIG_FILE} "set(ENV{SOURCE_DATE_EPOCH} ${date})\n")
set(CPACK_POST_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/symbol_packages.cmake)
include(CPack)
