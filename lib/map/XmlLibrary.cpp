#include "XmlLibrary.h"

#include <optional>

#include "KYV/SharedLibrary.h"

namespace KYV {

namespace {

std::optional<XmlLibrary> load() {
  const SharedLibrary library({"libxml2.so.2", "libxml2.so.16", "libxml2.so"});
  XmlLibrary x;
  const bool whole = library.find("xmlReaderForMemory", x.readerForMemory) &&
                     library.find("xmlTextReaderRead", x.read) && library.find("xmlTextReaderNodeType", x.nodeType) &&
                     library.find("xmlTextReaderConstLocalName", x.localName) &&
                     library.find("xmlTextReaderConstValue", x.value) &&
                     library.find("xmlFreeTextReader", x.freeReader) && library.find("xmlParserVersion", x.version);
  return whole ? std::optional(x) : std::nullopt;
}

}  // namespace

const XmlLibrary* XmlLibrary::get() {
  static const std::optional<XmlLibrary> functions = load();
  return functions ? &*functions : nullptr;
}

}  // namespace KYV
