// SPDX-License-Identifier: GPL-2.0-or-later
//
// A CD burner at /dev/sr0 for programs that this is preloaded into: it answers SCSI commands as a drive does,
// so that the real library for burning works with it. The drive and what lies in it are files of the folder
// $VELMORA_FAKE_BURNER:
//
//     drive    what it is like and what goes wrong, a word and a value a line (see Setup)
//     toc      of a written disc: a line a track "FIRST_SECTOR", then "out SECTOR"
//     disc     of a written disc: its sectors
//     text     the packs of text that were written before the first track
//     commands every command that came: its number, and for writing and reading "SECTOR COUNT"
#include <scsi/sg.h>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <map>
#include <mutex>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr const char* kDevice = "/dev/sr0";
constexpr int kSector = 2352;
constexpr int kLeadIn = 150; ///< sectors before the first that is counted
constexpr int kDeviceMajor = 11;

template<class Function>
Function real(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

std::string folder() {
    const char* named = getenv("VELMORA_FAKE_BURNER");
    return named ? named : "";
}

/// What the drive is like: words of the file "drive" with their values.
struct Setup {
    std::map<std::string, std::string> words;

    Setup() {
        std::ifstream file(folder() + "/drive");
        std::string word;
        std::string value;
        while (file >> word && std::getline(file >> std::ws, value))
            words[word] = value;
    }
    [[nodiscard]] std::string text(const std::string& word, const std::string& otherwise) const {
        const auto found = words.find(word);
        return found == words.end() ? otherwise : found->second;
    }
    /// -1 where it isn't named.
    [[nodiscard]] int number(const std::string& word, int otherwise = -1) const {
        const auto found = words.find(word);
        return found == words.end() ? otherwise : std::stoi(found->second);
    }
    [[nodiscard]] bool has(const std::string& word) const { return words.contains(word); }
};

struct Sense {
    int key = 0;
    int code = 0;
    int qualifier = 0;
};
constexpr Sense kFine{};
constexpr Sense kNoMedium{2, 0x3a, 0};
constexpr Sense kBadField{5, 0x24, 0};
constexpr Sense kWrongMode{5, 0x64, 0};
constexpr Sense kBadSector{5, 0x21, 0};
constexpr Sense kWriteError{3, 0x0c, 0};
constexpr Sense kReadError{3, 0x11, 0};
constexpr Sense kSessionFixation{3, 0x72, 0};
constexpr Sense kHardware{4, 0x44, 0};
constexpr Sense kUnknown{5, 0x20, 0};

void put16(Bytes& bytes, std::size_t at, unsigned value) {
    bytes[at] = static_cast<std::uint8_t>(value >> 8U);
    bytes[at + 1] = static_cast<std::uint8_t>(value);
}
void put32(Bytes& bytes, std::size_t at, std::uint32_t value) {
    put16(bytes, at, value >> 16U);
    put16(bytes, at + 2, value & 0xffffU);
}
void putTime(Bytes& bytes, std::size_t at, int sector) {
    const int frames = sector + kLeadIn;
    bytes[at] = static_cast<std::uint8_t>(frames / 75 / 60);
    bytes[at + 1] = static_cast<std::uint8_t>(frames / 75 % 60);
    bytes[at + 2] = static_cast<std::uint8_t>(frames % 75);
}
std::uint32_t get32(std::span<const std::uint8_t> bytes, std::size_t at) {
    return (std::uint32_t{bytes[at]} << 24U) | (std::uint32_t{bytes[at + 1]} << 16U) |
           (std::uint32_t{bytes[at + 2]} << 8U) | bytes[at + 3];
}
unsigned get16(std::span<const std::uint8_t> bytes, std::size_t at) {
    return (unsigned{bytes[at]} << 8U) | bytes[at + 1];
}

class Drive {
public:
    /// Fills @p in or takes @p out. Returns false where the drive is gone.
    bool answer(std::span<const std::uint8_t> command, Bytes& in, std::span<const std::uint8_t> out,
                Sense& sense) {
        if (gone_)
            return false;
        log(command, out.size());
        sense = run(command, in, out);
        return !gone_;
    }

    [[nodiscard]] bool isGone() const { return gone_; }

private:
    [[nodiscard]] std::string medium() const { return setup_.text("medium", "cdr"); }
    [[nodiscard]] bool isLoaded() const { return medium() != "none"; }
    [[nodiscard]] bool isWritten() const { return !toc().empty(); }
    [[nodiscard]] int capacity() const { return setup_.number("capacity", 359849); }
    [[nodiscard]] unsigned profile() const {
        return medium() == "cdr" ? 0x09 : medium() == "cdrw" ? 0x0a : medium() == "dvd" ? 0x10 : 0;
    }

    /// The first sectors of the tracks and that behind the last; empty if the disc is blank.
    static std::vector<int> toc() {
        std::ifstream file(folder() + "/toc");
        std::vector<int> sectors;
        std::string word;
        while (file >> word) {
            if (word == "out")
                file >> word;
            sectors.push_back(std::stoi(word));
        }
        return sectors;
    }

    static void log(std::span<const std::uint8_t> command, std::size_t size) {
        std::ofstream file(folder() + "/commands", std::ios::app);
        char text[64];
        const bool moves = command[0] == 0x2a || command[0] == 0xbe;
        if (moves)
            std::snprintf(text, sizeof text, "%02x %d %zu\n", command[0], static_cast<int>(get32(command, 2)),
                          size);
        else
            std::snprintf(text, sizeof text, "%02x %02x %02x\n", command[0], command[1], command[2]);
        file << text;
    }

    Sense run(std::span<const std::uint8_t> c, Bytes& in, std::span<const std::uint8_t> out) {
        switch (c[0]) {
        case 0x00: // test unit ready
            return isLoaded() ? kFine : kNoMedium;
        case 0x03: // request sense
            in.assign(18, 0);
            in[0] = 0x70;
            return kFine;
        case 0x12:
            return inquiry(in);
        case 0x1b: // start or stop, load or eject
        case 0x1e: // prevent or allow removal
            return kFine;
        case 0x54: // calibrate power
            return kFine;
        case 0xbb: // set speed
        case 0xb6:
            return setup_.has("refuse_speed") ? kBadField : kFine;
        case 0x46:
            return configuration(in);
        case 0x4a: // events: none
            in.assign(8, 0);
            put16(in, 0, 6);
            in[2] = 0x80;
            return kFine;
        case 0x5a:
            return modeSense(c, in);
        case 0x55:
            return setup_.has("fail_mode") ? kBadField : modeSelect(out);
        case 0xac:
            return performance(c, in);
        case 0x51:
            return discInformation(in);
        case 0x52:
            return trackInformation(c, in);
        case 0x43:
            return tableOfContents(c, in);
        case 0x5c: // buffer: all free
            in.assign(12, 0);
            put16(in, 0, 10);
            put32(in, 4, 2U << 20U);
            put32(in, 8, 2U << 20U);
            return kFine;
        case 0x5d:
            return setup_.has("fail_cue") ? kBadField : cueSheet(out);
        case 0x2a:
            return write(c, out);
        case 0x35:
            return synchronize();
        case 0x5b:
            return kSessionFixation; // a disc that is written at once closes itself
        case 0xa1:
            return blank();
        case 0xbe:
            return readCd(c, in);
        default:
            return kUnknown;
        }
    }

    Sense inquiry(Bytes& in) const {
        in.assign(96, 0);
        in[0] = 5; // a CD drive
        in[1] = 0x80;
        in[2] = 5;
        in[3] = 2;
        in[4] = 91;
        const auto put = [&in](std::size_t at, std::size_t room, std::string text) {
            text.resize(room, ' ');
            std::copy(text.begin(), text.end(), in.begin() + static_cast<std::ptrdiff_t>(at));
        };
        put(8, 8, setup_.text("vendor", "VELMORA"));
        put(16, 16, setup_.text("product", "Test Burner"));
        put(32, 4, "1.0");
        return kFine;
    }

    Sense configuration(Bytes& in) const {
        in.assign(8, 0);
        const auto add = [&in](unsigned feature, bool current, Bytes data) {
            in.push_back(static_cast<std::uint8_t>(feature >> 8U));
            in.push_back(static_cast<std::uint8_t>(feature));
            in.push_back(current ? 3 : 2);
            in.push_back(static_cast<std::uint8_t>(data.size()));
            in.insert(in.end(), data.begin(), data.end());
        };
        const bool isCd = profile() == 0x09 || profile() == 0x0a;
        const auto now = [this](unsigned one) { return static_cast<std::uint8_t>(profile() == one ? 1 : 0); };
        if (setup_.has("reader"))
            add(0x0000, true, {0, 8, 0, 0});
        else
            add(0x0000, true, {0, 8, 0, 0, 0, 9, now(9), 0, 0, 10, now(10), 0, 0, 16, now(16), 0});
        add(0x001e, isCd, {0, 0, 0, 0});
        if (!setup_.has("reader")) {
            const std::uint8_t text = setup_.has("no_text") ? 0 : 1;
            add(0x0021, isCd, {0, 0, 0, 0});
            add(0x002d, isCd, {static_cast<std::uint8_t>(0x46 | text), 0, 0x3f, 0xff});
            add(0x002e, isCd, {static_cast<std::uint8_t>(0x66 | text), 0, 0x0d, 0xe0});
        }
        put32(in, 0, static_cast<std::uint32_t>(in.size() - 4));
        put16(in, 6, profile());
        return kFine;
    }

    Bytes speeds() const {
        Bytes list;
        std::string text = setup_.text("speeds", "7056 2822 706");
        for (char* at = text.data(); *at != 0;) {
            const auto speed = static_cast<unsigned>(std::strtoul(at, &at, 10));
            list.insert(list.end(), {0, 0, 0, 0});
            put16(list, list.size() - 2, speed);
        }
        return list;
    }

    Sense modeSense(std::span<const std::uint8_t> c, Bytes& in) const {
        const int page = c[2] & 0x3f;
        in.assign(8, 0);
        if (page == 0x2a) {
            const Bytes list = speeds();
            Bytes caps(32, 0);
            caps[0] = 0x2a;
            caps[2] = 3;                                   // reads CD-R, CD-RW
            caps[3] = setup_.has("reader") ? 0 : 0x03 | 4; // writes them, and can pretend to
            caps[4] = 0x71;
            caps[5] = 0x0f;
            caps[6] = 0x29;
            put16(caps, 8, 7056);
            put16(caps, 10, 256);
            put16(caps, 12, 2048);
            put16(caps, 14, 7056);
            put16(caps, 18, 7056);
            put16(caps, 20, 7056);
            put16(caps, 22, 1);
            put16(caps, 28, get16(list, 2));
            put16(caps, 30, static_cast<unsigned>(list.size() / 4));
            caps.insert(caps.end(), list.begin(), list.end());
            caps[1] = static_cast<std::uint8_t>(caps.size() - 2);
            in.insert(in.end(), caps.begin(), caps.end());
        } else if (page == 0x05) {
            Bytes write(52, 0);
            write[0] = 0x05;
            write[1] = 50;
            if (!writePage_.empty())
                write = writePage_;
            in.insert(in.end(), write.begin(), write.end());
        } else if (page == 0x01) {
            in.insert(in.end(), {0x01, 10, 0, 3, 0, 0, 0, 0, 0, 0, 0, 0});
        } else {
            return kBadField;
        }
        put16(in, 0, static_cast<unsigned>(in.size() - 2));
        return kFine;
    }

    Sense modeSelect(std::span<const std::uint8_t> out) {
        if (out.size() >= 12 && (out[8] & 0x3fU) == 0x05)
            writePage_.assign(out.begin() + 8, out.end());
        return kFine;
    }

    Sense performance(std::span<const std::uint8_t> c, Bytes& in) const {
        in.assign(8, 0);
        if (c[10] == 3) {
            const Bytes list = speeds();
            for (std::size_t i = 0; i < list.size(); i += 4) {
                Bytes row(16, 0);
                put32(row, 4, static_cast<std::uint32_t>(capacity()));
                put32(row, 8, 7056);
                put32(row, 12, get16(list, i + 2));
                in.insert(in.end(), row.begin(), row.end());
            }
        }
        put32(in, 0, static_cast<std::uint32_t>(in.size() - 4));
        return kFine;
    }

    Sense discInformation(Bytes& in) const {
        if (!isLoaded())
            return kNoMedium;
        const auto tracks = static_cast<int>(toc().size()) - 1;
        in.assign(34, 0);
        put16(in, 0, 32);
        in[2] = isWritten() || medium() == "dvd" ? 0x0e : 0x00;
        if (medium() == "cdrw")
            in[2] |= 0x10;
        in[3] = 1;
        in[4] = 1;
        in[5] = 1;
        in[6] = static_cast<std::uint8_t>(isWritten() ? tracks : 1);
        in[8] = isWritten() ? 0x00 : 0xff;
        if (!isWritten()) {
            in[17] = 97;
            putTime(in, 21, capacity());
        } else {
            in[17] = in[18] = in[19] = in[21] = in[22] = in[23] = 0xff;
        }
        return kFine;
    }

    Sense trackInformation(std::span<const std::uint8_t> c, Bytes& in) const {
        if (!isLoaded())
            return kNoMedium;
        if (setup_.has("fail_address"))
            return kHardware;
        const std::vector<int> starts = toc();
        const auto number = static_cast<int>(get32(c, 2));
        in.assign(36, 0);
        put16(in, 0, 34);
        in[3] = 1;
        if (!isWritten()) {
            in[2] = 1;
            in[6] = 0x40;
            in[7] = 1;
            put32(in, 16, static_cast<std::uint32_t>(capacity()));
            put32(in, 24, static_cast<std::uint32_t>(capacity()));
            return kFine;
        }
        if (number < 1 || number >= static_cast<int>(starts.size()))
            return kBadField;
        const auto at = static_cast<std::size_t>(number);
        in[2] = static_cast<std::uint8_t>(number);
        put32(in, 8, static_cast<std::uint32_t>(starts[at - 1]));
        put32(in, 24, static_cast<std::uint32_t>(starts[at] - starts[at - 1]));
        return kFine;
    }

    Sense tableOfContents(std::span<const std::uint8_t> c, Bytes& in) const {
        if (!isLoaded())
            return kNoMedium;
        const int format = (c[2] & 0x0f) != 0 ? c[2] & 0x0f : c[9] >> 6;
        const std::vector<int> starts = toc();
        in.assign(4, 0);
        in[2] = in[3] = 1;
        if (format == 4) { // what is known of the blank disc
            in.assign(28, 0);
            in[4] = 0x80 | 0x20;
            in[6] = static_cast<std::uint8_t>(0x80 | (medium() == "cdrw" ? 0x40 : 0));
            in[8] = 97;
            in[9] = 26;
            in[10] = 66;
            putTime(in, 12, capacity());
            put16(in, 0, static_cast<unsigned>(in.size() - 2));
            return kFine;
        }
        if (starts.empty())
            return kBadField;
        const auto tracks = starts.size() - 1;
        const auto add = [&in](Bytes row) { in.insert(in.end(), row.begin(), row.end()); };
        if (format == 2) {
            const auto last = static_cast<std::uint8_t>(tracks);
            add({1, 0x10, 0, 0xa0, 0, 0, 0, 0, 1, 0, 0});
            add({1, 0x10, 0, 0xa1, 0, 0, 0, 0, last, 0, 0});
            for (std::size_t i = 0; i <= tracks; ++i) {
                const bool isOut = i == 0;
                Bytes row{1, 0x10, 0, static_cast<std::uint8_t>(isOut ? 0xa2 : i), 0, 0, 0, 0, 0, 0, 0};
                putTime(row, 8, isOut ? starts.back() : starts[i - 1]);
                add(row);
            }
        } else if (format == 0) {
            in[3] = static_cast<std::uint8_t>(tracks);
            for (std::size_t i = 0; i <= tracks; ++i) {
                Bytes row{0, 0x10, static_cast<std::uint8_t>(i == tracks ? 0xaa : i + 1), 0, 0, 0, 0, 0};
                put32(row, 4, static_cast<std::uint32_t>(starts[i]));
                add(row);
            }
        } else if (format == 1) {
            add({0, 0x10, 1, 0, 0, 0, 0, 0});
        } else {
            return kBadField;
        }
        put16(in, 0, static_cast<unsigned>(in.size() - 2));
        return kFine;
    }

    /// As many milliseconds as that word says.
    void pause(const char* word) const {
        if (const int slow = setup_.number(word); slow > 0) {
            const timespec time{0, slow * 1000000L};
            nanosleep(&time, nullptr);
        }
    }

    /// Where the tracks of a disc that is written at once begin.
    Sense cueSheet(std::span<const std::uint8_t> out) {
        planned_.clear();
        stored_ = 0;
        for (std::size_t at = 0; at + 8 <= out.size(); at += 8) {
            const int track = out[at + 1];
            const int index = out[at + 2];
            const int sector = (out[at + 5] * 60 + out[at + 6]) * 75 + out[at + 7] - kLeadIn;
            if ((track >= 1 && track <= 99 && index == 1) || track == 0xaa)
                planned_.push_back(sector);
        }
        return kFine;
    }

    Sense write(std::span<const std::uint8_t> c, std::span<const std::uint8_t> out) {
        if (!isLoaded())
            return kNoMedium;
        if (isWritten())
            return kWrongMode;
        const auto sector = static_cast<int>(get32(c, 2));
        const auto count = static_cast<int>(get16(c, 7));
        pause("slow");
        const auto reaches = [&](const char* word) {
            const int at = setup_.number(word);
            return at >= 0 && sector + count > at;
        };
        if (reaches("vanish")) {
            gone_ = true;
            return kHardware;
        }
        if (reaches("fail_write"))
            return kWriteError;
        if (sector + count > capacity())
            return kBadSector;
        const std::size_t size = count > 0 ? out.size() / static_cast<std::size_t>(count) : 0;
        if (sector < -kLeadIn) { // text, six bits to the byte
            std::ofstream(folder() + "/text", std::ios::binary | std::ios::app)
                .write(reinterpret_cast<const char*>(out.data()), static_cast<std::streamsize>(out.size()));
            return size == 96 ? kFine : kBadField;
        }
        if (size != kSector)
            return kBadField;
        for (int i = 0; i < count; ++i)
            if (sector + i >= 0)
                store(sector + i, out.subspan(static_cast<std::size_t>(i) * kSector, kSector));
        return kFine;
    }

    static void store(int sector, std::span<const std::uint8_t> bytes) {
        const int file = real<int (*)(const char*, int, ...)>("open")((folder() + "/disc").c_str(),
                                                                      O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
        if (pwrite(file, bytes.data(), bytes.size(), off_t{sector} * kSector) < 0)
            std::abort();
        real<int (*)(int)>("close")(file);
        if (stored_ < sector + 1)
            stored_ = sector + 1;
    }

    Sense synchronize() {
        pause("slow_sync");
        if (setup_.has("fail_sync"))
            return kHardware;
        if (!planned_.empty() && stored_ >= planned_.back())
            finish();
        return kFine;
    }

    void finish() {
        if (planned_.empty() || isWritten() || setup_.has("lose_toc"))
            return;
        std::ofstream file(folder() + "/toc");
        for (std::size_t i = 0; i + 1 < planned_.size(); ++i)
            file << planned_[i] << '\n';
        file << "out " << planned_.back() << '\n';
        planned_.clear();
    }

    Sense blank() {
        if (medium() != "cdrw")
            return kWrongMode;
        if (setup_.has("fail_blank"))
            return kHardware;
        for (const char* name : {"/toc", "/disc", "/text"})
            unlink((folder() + name).c_str());
        stored_ = 0;
        return kFine;
    }

    Sense readCd(std::span<const std::uint8_t> c, Bytes& in) const {
        if (!isWritten())
            return isLoaded() ? kBadSector : kNoMedium;
        const auto sector = static_cast<int>(get32(c, 2));
        const auto count = static_cast<int>((c[6] << 16U) | (c[7] << 8U) | c[8]);
        const int end = toc().back();
        if (sector + count > end)
            return kBadSector;
        const int bad = setup_.number("unreadable");
        if (bad >= sector && bad < sector + count)
            return kReadError;
        in.assign(static_cast<std::size_t>(count) * kSector, 0);
        const off_t shift = setup_.has("shift") ? off_t{setup_.number("shift")} * 4 : 0;
        const off_t at = off_t{sector} * kSector + shift;
        const off_t skipped = at < 0 ? -at : 0;
        const int file =
            real<int (*)(const char*, int, ...)>("open")((folder() + "/disc").c_str(), O_RDONLY | O_CLOEXEC);
        if (skipped < static_cast<off_t>(in.size()) &&
            pread(file, in.data() + skipped, in.size() - static_cast<std::size_t>(skipped), at + skipped) < 0)
            std::abort();
        real<int (*)(int)>("close")(file);
        const int wrong = setup_.number("wrong");
        if (wrong >= sector && wrong < sector + count)
            in[static_cast<std::size_t>(wrong - sector) * kSector + 1000] ^= 1U;
        return kFine;
    }

    Setup setup_;
    Bytes writePage_;
    std::vector<int> planned_;
    static inline int stored_ = 0; ///< the sector behind the last that was written
    bool gone_ = false;
};

std::mutex& lock() {
    static std::mutex only;
    return only;
}
/// Descriptors of the drive that are open, and the drive while one is.
std::set<int>& descriptors() {
    static std::set<int> all;
    return all;
}
Drive*& drive() {
    static Drive* only = nullptr;
    return only;
}

bool isDevice(const char* path) {
    return path && !folder().empty() && std::strcmp(path, kDevice) == 0 && !Setup().has("absent");
}

int openDevice() {
    const std::lock_guard guard(lock());
    const int fd = real<int (*)(const char*, int, ...)>("open")((folder() + "/device").c_str(),
                                                                O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0)
        return fd;
    if (descriptors().empty() || drive()->isGone()) {
        delete drive();
        drive() = new Drive;
    }
    descriptors().insert(fd);
    return fd;
}

bool isOurs(int fd) {
    const std::lock_guard guard(lock());
    return descriptors().contains(fd);
}

int transfer(sg_io_hdr_t& request) {
    const std::lock_guard guard(lock());
    Bytes in;
    Sense sense;
    std::span<const std::uint8_t> out;
    if (request.dxfer_direction == SG_DXFER_TO_DEV)
        out = {static_cast<const std::uint8_t*>(request.dxferp), request.dxfer_len};
    std::array<std::uint8_t, 16> command{};
    std::memcpy(command.data(), request.cmdp, std::min<std::size_t>(request.cmd_len, command.size()));
    if (!drive()->answer(command, in, out, sense)) {
        errno = ENODEV;
        return -1;
    }
    const std::size_t got = std::min<std::size_t>(in.size(), request.dxfer_len);
    if (request.dxfer_direction == SG_DXFER_FROM_DEV)
        std::memcpy(request.dxferp, in.data(), got);
    request.resid =
        request.dxfer_direction == SG_DXFER_FROM_DEV ? static_cast<int>(request.dxfer_len - got) : 0;
    request.status = request.host_status = request.driver_status = 0;
    request.sb_len_wr = 0;
    request.info = 0;
    request.duration = 1;
    if (sense.key != 0) {
        std::array<std::uint8_t, 18> told{};
        told[0] = 0x70;
        told[2] = static_cast<std::uint8_t>(sense.key);
        told[7] = 10;
        told[12] = static_cast<std::uint8_t>(sense.code);
        told[13] = static_cast<std::uint8_t>(sense.qualifier);
        request.sb_len_wr = static_cast<unsigned char>(std::min<std::size_t>(told.size(), request.mx_sb_len));
        std::memcpy(request.sbp, told.data(), request.sb_len_wr);
        request.status = request.masked_status = 2;
        request.driver_status = 8;
        request.info = 1;
    }
    return 0;
}

int describe(struct stat* answer) {
    *answer = {};
    answer->st_mode = S_IFBLK | 0660;
    answer->st_rdev = makedev(kDeviceMajor, 0);
    answer->st_nlink = 1;
    answer->st_uid = getuid();
    return 0;
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, unsigned);
    va_end(rest);
    return isDevice(path) ? openDevice() : real<int (*)(const char*, int, ...)>("open")(path, flags, mode);
}
__attribute__((visibility("default"))) int open64(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const auto mode = va_arg(rest, unsigned);
    va_end(rest);
    return isDevice(path) ? openDevice() : real<int (*)(const char*, int, ...)>("open64")(path, flags, mode);
}
__attribute__((visibility("default"))) int __open_2(const char* path, int flags) {
    return isDevice(path) ? openDevice() : real<int (*)(const char*, int)>("__open_2")(path, flags);
}
__attribute__((visibility("default"))) int close(int fd) {
    {
        const std::lock_guard guard(lock());
        descriptors().erase(fd);
    }
    return real<int (*)(int)>("close")(fd);
}
__attribute__((visibility("default"))) int __xstat(int version, const char* path, struct stat* answer) {
    return isDevice(path) ? describe(answer)
                          : real<int (*)(int, const char*, struct stat*)>("__xstat")(version, path, answer);
}
__attribute__((visibility("default"))) int __lxstat(int version, const char* path, struct stat* answer) {
    return isDevice(path) ? describe(answer)
                          : real<int (*)(int, const char*, struct stat*)>("__lxstat")(version, path, answer);
}
__attribute__((visibility("default"))) int ioctl(int fd, unsigned long request, ...) {
    va_list rest;
    va_start(rest, request);
    void* argument = va_arg(rest, void*);
    va_end(rest);
    if (!isOurs(fd))
        return real<int (*)(int, unsigned long, ...)>("ioctl")(fd, request, argument);
    constexpr unsigned long kGetIdLun = 0x5382;
    constexpr unsigned long kGetBusNumber = 0x5386;
    switch (request) {
    case SG_IO:
        return transfer(*static_cast<sg_io_hdr_t*>(argument));
    case kGetIdLun:
        std::memset(argument, 0, 2 * sizeof(int));
        return 0;
    case kGetBusNumber:
        *static_cast<int*>(argument) = 0;
        return 0;
    default:
        errno = ENOTTY;
        return -1;
    }
}

} // extern "C"
