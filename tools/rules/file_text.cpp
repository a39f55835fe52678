#include "tools/rules/file_text.hpp"

#include "frontend/source_decoding.hpp"
#include "frontend/source_file_reader.hpp"
#include "platform/i18n/i18n.hpp"

namespace plexus::rules {

ca::astapi::StringId FileText::GetAnalysisId() {
  static ca::astapi::StringId const id(u"plexus.rules.FileText");
  return id;
}

std::shared_ptr<FileText> FileText::Create(ca::Analysis const& analysis) {
  auto text = std::make_shared<FileText>();
  ca::ast::Program const* const program = analysis.getProgram();
  if (program == nullptr) return text;
  std::string const path = fl::i18n::to_utf8(ca::astapi::toStdView(program->getFilePath()));
  frontend::SourceFileReader reader;
  frontend::SourceFileReader::Result const read = reader.read(path.c_str());
  if (!read.ok()) return text;
  // Decoded as the parser decoded it, so that the tree's offsets fit.
  frontend::DecodedSource const decoded = frontend::decodeSource(read.bytes);
  if (!decoded.readable()) return text;
  text->text_.assign(decoded.text());
  text->readable_ = true;
  return text;
}

}  // namespace plexus::rules
