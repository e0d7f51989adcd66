#include "KYV/ResrcDBList.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>

#include "KYV/StrLib.h"

namespace KYV {

namespace {

int copyItem(const ResrcDBItem* from, ResrcDBItem& to) {
  if (!from) return 0;
  to = *from;
  return 1;
}

}  // namespace

int ResrcDBList::add(const char* name, const char* env, const char* cmdln, const char* help) {
  ResrcDBItem item;
  item.set(name, env, cmdln, help);
  ResrcDBItem* last = items.empty() ? nullptr : &items.back();
  items.push_back(item);
  if (last) last->next = &items.back();
  return 1;
}

int ResrcDBList::rewind() {
  cur = items.empty() ? nullptr : &items.front();
  return 1;
}

ResrcDBItem* ResrcDBList::next() {
  ResrcDBItem* item = cur;
  if (item) cur = item->next;
  return item;
}

// As a loop needs it: next() goes on with the second item.
ResrcDBItem* ResrcDBList::first() {
  rewind();
  return next();
}

ResrcDBItem* ResrcDBList::get(int i) {
  const std::size_t at = static_cast<std::size_t>(std::max(i, 0));
  return at < items.size() ? &items[at] : nullptr;
}

int ResrcDBList::first(ResrcDBItem& item) { return copyItem(first(), item); }

int ResrcDBList::next(ResrcDBItem& item) { return copyItem(next(), item); }

int ResrcDBList::get(int i, ResrcDBItem& item) { return copyItem(get(i), item); }

int ResrcDBList::print() const {
  for (const ResrcDBItem& item : items) {
    std::printf("%s %s %s %s\n", StrLib::valid(item.name, ""), StrLib::valid(item.env, ""),
                StrLib::valid(item.cmdln, ""), StrLib::valid(item.help, ""));
  }
  return 1;
}

}  // namespace KYV
