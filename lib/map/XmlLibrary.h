#ifndef KYV_XMLLIBRARY_H
#define KYV_XMLLIBRARY_H

#include <libxml/xmlreader.h>

namespace KYV {

/// The functions of libxml2, loaded with the first KML file.
struct XmlLibrary {
  decltype(::xmlReaderForMemory)* readerForMemory = nullptr;
  decltype(::xmlTextReaderRead)* read = nullptr;
  decltype(::xmlTextReaderNodeType)* nodeType = nullptr;
  decltype(::xmlTextReaderConstLocalName)* localName = nullptr;
  decltype(::xmlTextReaderConstValue)* value = nullptr;
  decltype(::xmlFreeTextReader)* freeReader = nullptr;
  const char** version = nullptr;  // "20914" for 2.9.14

  /// The functions; null when the library or one of them is missing.
  static const XmlLibrary* get();
};

}  // namespace KYV
#endif
