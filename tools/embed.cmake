# Writes the C++ source of a function that gives the files of a folder by name, and of one more:
# cmake -DFOLDER=FOLDER -DMORE=FILE -DHEADER=FILE -DFUNCTION=NAME -DOUTPUT=FILE -P embed.cmake
file(GLOB paths ${FOLDER}/*)
list(SORT paths)
list(APPEND paths ${MORE})
list(FILTER paths EXCLUDE REGEX "/built-from$")
set(arrays "")
set(rows "")
set(number 0)
foreach(path IN LISTS paths)
  get_filename_component(name ${path} NAME)
  file(SIZE ${path} size)
  file(READ ${path} bytes HEX)
  string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
  string(APPEND arrays "const unsigned char kFile${number}[] = {${bytes}};\n")
  string(APPEND rows "  if (name == \"${name}\") {
    return {reinterpret_cast<const char*>(kFile${number}), ${size}};
  }\n")
  math(EXPR number "${number} + 1")
endforeach()
file(WRITE ${OUTPUT} "#include \"${HEADER}\"

namespace fyn::productionrules {

namespace {

${arrays}
}  // namespace

std::string_view ${FUNCTION}(std::string_view name) {
${rows}  return {};
}

}  // namespace fyn::productionrules
")
