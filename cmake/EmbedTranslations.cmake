# cmake -D FOLDER=translations -D OUTPUT=file.cpp -P EmbedTranslations.cmake: the files of the folder as a C++ source, so
# that the packer is one file wherever it is copied to. They are sorted by name: the same files give the same source.
file(GLOB files "${FOLDER}/*.toml")
list(SORT files)
set(rows "")
foreach(file IN LISTS files)
  get_filename_component(language "${file}" NAME_WE)
  file(READ "${file}" contents)
  string(APPEND rows "    {\"${language}\", R\"toml(${contents})toml\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"packer/manifest/ReadyTexts.h\"

namespace korb::packer {

static constexpr TranslationFile kFiles[] = {
${rows}};

std::span<const TranslationFile> TranslationFiles() {
  return kFiles;
}

} // namespace korb::packer
")
