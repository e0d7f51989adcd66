#include "KYV/Filename.h"

#include "KYV/FileTool.h"
#include "KYV/Kyv.h"

namespace KYV {

int Filename::setName(const char* text) {
  name.copy(text);
  is_set = fixed = name.valid();
  return is_set;
}

int Filename::checkFile(const char* spec) {
  is_set = fixed = false;
  name.clear();
  if (!StrLib::valid(spec)) return 0;
  if (StrLib::equal(spec, "exit")) Kyv::exit(Kyv::NOERR);
  if (*spec == '@') return setName(spec + 1);
  if (FileTool::isStdio(spec)) return setName("-");
  return setName(spec);
}

int Filename::setList() {
  num_file = files.getNum() > 1 ? files.getNum() : 1;
  return checkFile(files.getString(0));
}

int Filename::setFile(const char* spec) {
  if (!StrLib::valid(spec)) return setFile();
  files.set(spec, ',');
  return setList();
}

int Filename::setFile() {
  const char* names = Kyv::resrc.get("filename");
  if (!StrLib::valid(names)) return 0;
  files.set(names, StrLib::index(names, '\n') >= 0 ? '\n' : ',');
  return setList() && exist();
}

int Filename::setFile(const Date&) { return is_set && exist(); }

int Filename::setFile(const Date& d, const char* spec) { return StrLib::valid(spec) ? setFile(spec) : setFile(d); }

int Filename::setFile(int i) { return i >= 0 && i < files.getNum() ? checkFile(files.getString(i)) : 0; }

const char* Filename::getName(int i) const {
  if (i == 0) return name.get();
  const char* text = files.getString(i);
  return text ? text : "";
}

bool Filename::exist() const { return is_set && (FileTool::isStdio(name.get()) || FileTool::exist(name.get())); }

}  // namespace KYV
