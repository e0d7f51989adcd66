#include "KYV/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>

#include "CurlLibrary.h"
#include "HttpTransfer.h"
#include "KYV/FileTool.h"
#include "KYV/Kyv.h"
#include "KYV/String.h"

namespace KYV {

namespace {

constexpr std::size_t WRITE_BUFFER = 65536;
constexpr int MAX_LINE = 16 * 1024 * 1024;
// The step in which a line of a URL is skipped.
constexpr int SKIP_STEP = 200;

bool isUrl(const char* name) { return std::strncmp(name, "http://", 7) == 0; }

bool isDirectory(std::FILE* fp) {
  struct stat info = {};
  return fstat(fileno(fp), &info) == 0 && S_ISDIR(info.st_mode);
}

void ignorePipeSignal() {
  struct sigaction old = {};
  sigaction(SIGPIPE, nullptr, &old);
  if (old.sa_handler == SIG_DFL) std::signal(SIGPIPE, SIG_IGN);
}

// A reader that goes away shall be a failed write, not the end of the process. The command itself starts with the
// default, as it would from a shell.
std::FILE* startPipe(const char* command, bool writing) {
  struct sigaction standard = {};
  struct sigaction old = {};
  standard.sa_handler = SIG_DFL;
  sigaction(SIGPIPE, &standard, &old);
  std::FILE* fp = popen(command, writing ? "w" : "r");
  if (fp && writing && old.sa_handler == SIG_DFL) old.sa_handler = SIG_IGN;
  sigaction(SIGPIPE, &old, nullptr);
  return fp;
}

// Opens a file for reading without waiting: a named pipe that nobody writes to would hang, and is no file. What a shell
// puts in the place of a command, <(COMMAND), is one of the descriptors that it leaves open.
std::FILE* openReader(const char* path, const char* mode) {
  const bool given = StrLib::equal(path, "/dev/", 5) || StrLib::equal(path, "/proc/", 6);
  const int fd = ::open(path, (std::strchr(mode, '+') ? O_RDWR : O_RDONLY) | O_NONBLOCK | O_CLOEXEC);
  if (fd < 0) return nullptr;
  struct stat info = {};
  if (fstat(fd, &info) != 0 || (S_ISFIFO(info.st_mode) && !given)) {
    ::close(fd);
    return errno = ESPIPE, nullptr;
  }
  fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
  return fdopen(fd, mode);
}

}  // namespace

// What a handle holds while it reads a URL.
struct File::Transfer {
  // A product has less than a megabyte; more than this is no file for us, whatever the server sends.
  static constexpr int MAX_BODY = 256 * 1024 * 1024;

  HttpTransfer http;

  // Appends received bytes; false beyond the limit.
  static bool append(Buffer& buf, const char* bytes, std::size_t n) {
    const int size = buf.getSize();
    if (n > static_cast<std::size_t>(MAX_BODY - size)) return false;
    const int need = size + static_cast<int>(n);
    // Doubled, so that a long body is not copied for every piece received.
    if (need > buf.getMax()) buf.resize(std::clamp(2 * buf.getMax(), need, MAX_BODY));
    buf.add(reinterpret_cast<const unsigned char*>(bytes), static_cast<int>(n));
    return true;
  }
};

File::File() = default;

// What nobody closed is not known to be complete.
File::~File() { discard(); }

int File::open(const char* name, const char* mode) {
  if (opened) close();
  failed = false;
  fault = 0;
  if (!StrLib::valid(name) || !StrLib::valid(mode) || !std::strchr("prwa", mode[0])) return 0;
  if (mode[0] == 'p') return openPipe(name, mode + 1);
  const bool reading = mode[0] == 'r';
  if (isUrl(name)) return reading ? openUrl(name) : 0;
  // A file may have such a name, which a shell puts in the place of '*'.
  if (name[0] == '|' && !(reading && FileTool::isFile(name))) return openPipe(name + 1, reading ? "r" : "w");

  access = reading || std::strchr(mode, '+') ? 0 : 1;
  if (FileTool::isStdio(name)) {
    fp = reading ? stdin : keptOutput() ? keptOutput() : stdout;
    // A reader that goes away shall be a failed write.
    if (!reading) ignorePipeSignal();
    stype = shared = 1;
  } else {
    String path;
    FileTool::addUserPath(name, path);
    if (!reading) FileTool::makeDir(path.get());
    errno = 0;
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): close() knows whose the stream is
    fp = mode[0] == 'w' && OutputFile::isWhole(path.get()) ? output.open(path.get())
         : reading                                         ? openReader(path.get(), mode)
                                                           : std::fopen(path.get(), mode);
    if (!fp) return fault = errno, 0;
    if (isDirectory(fp)) {
      std::fclose(fp);  // NOLINT(cppcoreguidelines-owning-memory)
      fp = nullptr;
      return fault = EISDIR, 0;
    }
    if (!reading) std::setvbuf(fp, nullptr, _IOFBF, WRITE_BUFFER);
  }
  type = PLAIN;
  opened = true;
  return 1;
}

int File::open(const String& name, const char* mode) { return open(name.get(), mode); }

int File::open(const char* name, int mode) {
  static constexpr const char* MODES[] = {"r", "w", "a"};  // READ, WRITE, APPEND
  return open(name, mode >= READ && mode <= APPEND ? MODES[mode] : nullptr);
}

int File::openData(const char* name) {
  // A device may go on for ever.
  if (StrLib::valid(name) && (name[0] == '|' || FileTool::isDevice(name))) name = nullptr;
  return open(name, "r");
}

int File::openPipe(const char* command, const char* mode) {
  const bool reading = mode[0] == 'r';
  if (!StrLib::validData(command) || (!reading && mode[0] != 'w')) return 0;
  fp = startPipe(command, !reading);
  if (!fp) return 0;
  type = PIPE;
  access = reading ? 0 : 1;
  opened = true;
  return 1;
}

int File::close() {
  if (!opened) return failed ? 0 : 1;
  if (type == URL) {
    transfer.reset();
    buf = Buffer();
  } else if (shared) {
    // Flushing an input stream would move the position of those who share it.
    if (access) flush();
  } else if (type == PIPE) {
    // A command that could not be found, or failed, has not taken what was written. One that was only read may have
    // been stopped by the close.
    const int status = pclose(fp);
    if (status == -1 || (access && status != 0)) failed = true;
  } else if (output.isOpen()) {
    errno = 0;
    if (failed) {
      output.discard();
    } else if (!output.commit()) {
      fail();
    }
  } else if (std::fclose(fp) != 0) {  // NOLINT(cppcoreguidelines-owning-memory)
    fail();
  }
  fp = nullptr;
  type = PLAIN;
  stype = access = shared = 0;
  opened = false;
  return failed ? 0 : 1;
}

void File::discard() {
  if (output.isOpen()) failed = true;
  close();
}

// The first failure tells the reason, those that follow are its consequences.
void File::fail() {
  if (!failed) fault = errno;
  failed = true;
}

String File::getReason() const {
  String reason;
  if (fault == 0) return reason;
  reason.copy(": ");
  reason.append(fault == EEXIST ? "it is an input of this run" : std::strerror(fault));
  return reason;
}

// The next line or as much of it as fits, and whether its end was among it; -1 when there is nothing to read from.
int File::getPiece(char* line, int n, bool& ended) {
  ended = false;
  if (line && n > 0) line[0] = '\0';
  if (!opened || access) return -1;
  if (!line || n <= 0) return 0;
  int num = 0;
  if (type == URL) {
    fill(n);
    num = buf.readLine(reinterpret_cast<unsigned char*>(line), n - 1);
    ended = num > 0 && line[num - 1] == '\n';
    line[ended ? num - 1 : num] = '\0';
    return num;
  }
  while (num < n - 1 && !ended) {
    const int c = getc_unlocked(fp);
    if (c == EOF) break;
    line[num++] = static_cast<char>(c);
    ended = c == '\n';
  }
  line[num] = '\0';
  return num;
}

int File::getLine(char* line, int n) {
  bool ended = false;
  const int num = getPiece(line, n, ended);
  return num == 0 && type == URL && endFile() ? -1 : num;
}

int File::getLine(String& line) {
  line.clear();
  char piece[1024];
  bool ended = false;
  int total = 0;
  while (!ended && total <= MAX_LINE - static_cast<int>(sizeof piece)) {
    const int num = getPiece(piece, sizeof piece, ended);
    if (num < 0) return -1;
    if (num == 0) break;
    line.append(piece);
    total += num;
  }
  return total == 0 && type == URL ? -1 : total;
}

int File::skipLine() {
  char piece[SKIP_STEP];
  bool ended = false;
  int total = 0;
  while (!ended) {
    const int num = getPiece(piece, sizeof piece, ended);
    if (num <= 0) break;
    total = 1;
  }
  return total;
}

int File::rewind() { return seek(0); }

bool File::endFile() {
  if (!opened || access) return true;
  if (type == URL) return fill(1) == 0;
  const int c = std::getc(fp);
  if (c == EOF) return true;
  std::ungetc(c, fp);
  return false;
}

int File::printf(const char* format, ...) {
  if (!opened || !fp || !format) return 0;
  std::va_list args;
  va_start(args, format);
  const int num = std::vfprintf(fp, format, args);
  va_end(args);
  if (num >= 0) return num;
  fail();
  return 0;
}

int File::scanf(const char* format, ...) {
  if (type == URL) {
    Kyv::outError("scanf not supported\n");
    return 0;
  }
  if (!opened || access || !format) return 0;
  std::va_list args;
  va_start(args, format);
  const int num = std::vfscanf(fp, format, args);
  va_end(args);
  return num;
}

int File::read(void* bytes, int n) {
  if (!opened || access) return -1;
  if (!bytes || n <= 0) return 0;
  if (type == URL) {
    fill(n);
    return buf.read(static_cast<unsigned char*>(bytes), n);
  }
  return static_cast<int>(std::fread(bytes, 1, static_cast<std::size_t>(n), fp));
}

int File::read(Buffer& buffer) {
  const int room = buffer.getRoom();
  if (room <= 0 && opened && !access) return buffer.getSize();
  const int num = read(buffer.getFree(), room);
  if (num <= 0) return -1;
  buffer.setSize(buffer.getSize() + num);
  return buffer.getSize();
}

int File::write(const void* bytes, int n) {
  if (!opened || !fp || !bytes || n <= 0) return 0;
  const std::size_t num = std::fwrite(bytes, 1, static_cast<std::size_t>(n), fp);
  if (num < static_cast<std::size_t>(n)) fail();
  return static_cast<int>(num);
}

int File::seek(std::int64_t offset, int whence) {
  if (!opened) return 0;
  if (type != URL) return fseeko(fp, offset, whence) == 0 ? 1 : 0;
  if (whence == SEEK_END) fill(Transfer::MAX_BODY);
  const std::int64_t base = whence == SEEK_CUR ? buf.getInd() : whence == SEEK_END ? buf.getSize() : 0;
  std::int64_t to = 0;
  if (__builtin_add_overflow(base, offset, &to) || to < 0 || to > Transfer::MAX_BODY) return 0;
  if (to > buf.getSize()) fill(static_cast<int>(to) - buf.getInd());
  return buf.seek(static_cast<int>(to));
}

std::int64_t File::tell() {
  if (!opened) return -1;
  return type == URL ? buf.getInd() : ftello(fp);
}

int File::flush() {
  if (!opened || !fp) return 0;
  if (std::fflush(fp) == 0) return 1;
  fail();
  return 0;
}

const char* File::getUrlLibrary() {
  const CurlLibrary* library = CurlLibrary::get();
  return library ? library->version() : "";
}

// Standard output itself, when what the program says goes elsewhere.
std::FILE*& File::keptOutput() {
  static std::FILE* stream = nullptr;
  return stream;
}

int File::keepOutput() {
  if (keptOutput()) return 1;
  std::fflush(stdout);
  const int fd = dup(fileno(stdout));
  if (fd < 0 || dup2(fileno(stderr), fileno(stdout)) < 0) return 0;
  keptOutput() = fdopen(fd, "w");
  return keptOutput() ? 1 : 0;
}

int File::setShare(int share) {
  if (share && output.isOpen()) output.release();
  return shared = share ? 1 : 0, 1;
}

int File::openUrl(const char* url) {
  transfer = std::make_unique<Transfer>();
  buf.clear();
  const bool started =
      transfer->http.start(url, [this](const char* bytes, std::size_t n) { return Transfer::append(buf, bytes, n); });
  // A missing file is known by its status line: wait for that, but not for the body.
  while (started && transfer->http.perform("F:o") && !transfer->http.hasHeaders()) transfer->http.wait("F:o");
  if (!transfer->http.isFound() || transfer->http.getLength() > Transfer::MAX_BODY) {
    transfer.reset();
    buf = Buffer();
    return 0;
  }
  type = URL;
  access = 0;
  opened = true;
  return 1;
}

// Receives until that many bytes are unread or the transfer ends; how many there are. What was read stays for rewind.
int File::fill(int need) {
  while (buf.getAvail() < need && transfer->http.perform("F:cfb")) {
    if (buf.getAvail() < need) transfer->http.wait("F:cfb");
  }
  return buf.getAvail();
}

}  // namespace KYV
