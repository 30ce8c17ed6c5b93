# cmake -D PAGE=docs/manifest.md -D OUTPUT=file.cpp -P EmbedPage.cmake: the page as a C++ source, for the packer, which tells
# from it what a key is for.
file(READ "${PAGE}" page)
file(WRITE "${OUTPUT}" "#include \"packer/manifest/ManifestSchema.h\"

namespace korb::packer {

std::string_view ManifestPage() {
  return R\"page(${page})page\";
}

} // namespace korb::packer
")
