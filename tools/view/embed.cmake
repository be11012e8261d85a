# Writes the C++ source that holds the files of a folder: cmake -DPAGE=FOLDER -DOUTPUT=FILE -P embed.cmake
file(GLOB paths ${PAGE}/*)
list(SORT paths)
set(arrays "")
set(rows "")
set(number 0)
foreach(path IN LISTS paths)
  get_filename_component(name ${path} NAME)
  if(name STREQUAL "built-from")
    continue()
  endif()
  file(SIZE ${path} size)
  if(size GREATER 0)
    file(READ ${path} bytes HEX)
    string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${bytes}")
    string(APPEND arrays "const unsigned char kFile${number}[] = {${bytes}};\n")
    string(APPEND rows "      {\"${name}\", {reinterpret_cast<const char*>(kFile${number}), ${size}}},\n")
    math(EXPR number "${number} + 1")
  endif()
endforeach()
file(WRITE ${OUTPUT} "#include \"tools/view/PageFiles.h\"

namespace fyn::productionrules {

namespace {

${arrays}
}  // namespace

const std::vector<PageFile>& pageFiles() {
  static const std::vector<PageFile> files{
${rows}  };
  return files;
}

}  // namespace fyn::productionrules
")
