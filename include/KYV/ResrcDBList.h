#ifndef KYV_RESRCDBLIST_H
#define KYV_RESRCDBLIST_H

#include <deque>

#include "KYV/ResrcDBItem.h"

namespace KYV {

/// The resources that a program accepts, in the order of the help listing and of matching. Items stay where they are,
/// so that pointers to them live as long as the list.
class ResrcDBList {
 public:
  ResrcDBList() = default;
  ResrcDBList(const ResrcDBList&) = delete;
  ResrcDBList& operator=(const ResrcDBList&) = delete;

  int add(const char* name, const char* env, const char* cmdln, const char* help);
  int add(const ResrcDBItem& item) { return add(item.name, item.env, item.cmdln, item.help); }
  /// Cursor to the head.
  int rewind();
  /// The item at the cursor, which advances; null at the end.
  ResrcDBItem* next();
  /// The head, as rewind() and next().
  ResrcDBItem* first();
  /// Item i from 0 on; the head for an i below 1, null past the end.
  ResrcDBItem* get(int i);
  // The same as copies; 0 at the end.
  int first(ResrcDBItem& item);
  int next(ResrcDBItem& item);
  int get(int i, ResrcDBItem& item);
  int getNum() const { return static_cast<int>(items.size()); }
  /// "%s %s %s %s\n" an item on standard output.
  int print() const;

 private:
  std::deque<ResrcDBItem> items;  // linked through next
  ResrcDBItem* cur = nullptr;
};

}  // namespace KYV
#endif
