#ifndef KYV_FILEATTR_H
#define KYV_FILEATTR_H

namespace KYV {

/// How a file is opened.
class FileAttr {
 public:
  enum Access { READ = 0, WRITE = 1, APPEND = 2 };
};

}  // namespace KYV
#endif
