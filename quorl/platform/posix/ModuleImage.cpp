#include <quorl/platform/ModuleImage.h>

#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

/// The texts stand in notes: section ".note.zelm", owner "ZELM", the number as the type. Notes
/// survive `strip` and show in `readelf -n`. Format: the System V ABI, chapter 5.
namespace Tolmen::Platform
{
namespace
{

constexpr std::uint64_t kMostSegments = 4096;
constexpr std::uint64_t kMostNoteBytes = 1 << 20; // of all segments
constexpr std::string_view kOwner("ZELM\0", 5);

#if defined(__x86_64__)
constexpr std::uint16_t kMachine = EM_X86_64;
#elif defined(__aarch64__)
constexpr std::uint16_t kMachine = EM_AARCH64;
#elif defined(__riscv)
constexpr std::uint16_t kMachine = EM_RISCV;
#else
#    error "The number of this machine in ELF headers has to be told here."
#endif

/// A regular file that is only read, at places that are checked against its size.
class ReadOnlyFile
{
public:
    /// Does not wait, as a pipe would have it do.
    explicit ReadOnlyFile(const std::string& path)
        : descriptor_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK))
    {
        struct stat status = {};
        if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0)
            error_ = errno;
        else if (S_ISDIR(status.st_mode))
            error_ = EISDIR;
        else if (S_ISREG(status.st_mode)) // others hold nothing
            size_ = static_cast<std::uint64_t>(status.st_size);
    }
    ReadOnlyFile(const ReadOnlyFile&) = delete;
    ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
    ~ReadOnlyFile()
    {
        if (descriptor_ >= 0) ::close(descriptor_);
    }

    int error() const { return error_; } // of the opening; 0 if it is open

    bool holds(std::uint64_t offset, std::uint64_t count) const
    {
        return offset <= size_ && count <= size_ - offset;
    }

    /// \return whether all of it could be read.
    bool read(std::uint64_t offset, void* buffer, std::uint64_t count) const
    {
        auto* bytes = static_cast<char*>(buffer);
        if (!holds(offset, count)) return false;
        while (count > 0)
        {
            const ssize_t got = ::pread(descriptor_, bytes, count, static_cast<off_t>(offset));
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) return false; // the file has shrunk
            bytes += got;
            offset += static_cast<std::uint64_t>(got);
            count -= static_cast<std::uint64_t>(got);
        }
        return true;
    }

private:
    const int descriptor_;
    int error_ = 0;
    std::uint64_t size_ = 0;
};

bool isLibraryOfThisMachine(const Elf64_Ehdr& header)
{
    const unsigned char* const ident = header.e_ident;
    return std::memcmp(ident, ELFMAG, SELFMAG) == 0 && ident[EI_CLASS] == ELFCLASS64 &&
           ident[EI_DATA] == ELFDATA2LSB && ident[EI_VERSION] == EV_CURRENT &&
           header.e_type == ET_DYN && header.e_machine == kMachine &&
           header.e_phentsize == sizeof(Elf64_Phdr) && header.e_phnum >= 1 &&
           header.e_phnum <= kMostSegments;
}

/// The table of sections, which nothing needs, stands at the end: a file that was not copied to its
/// end has lost it.
bool isCutShort(const ReadOnlyFile& file, const Elf64_Ehdr& header)
{
    return header.e_shoff != 0 &&
           !file.holds(header.e_shoff, std::uint64_t{header.e_shnum} * sizeof(Elf64_Shdr));
}

/// \return nothing if the file is no library of this machine, or its headers lead out of it. The
/// loader does not look, and a process that touches a page behind the end of a file dies.
std::optional<std::vector<Elf64_Phdr>> readSegments(const ReadOnlyFile& file)
{
    Elf64_Ehdr header;
    if (!file.read(0, &header, sizeof header) || !isLibraryOfThisMachine(header) ||
        isCutShort(file, header))
        return std::nullopt;
    std::vector<Elf64_Phdr> segments(header.e_phnum);
    if (!file.read(header.e_phoff, segments.data(), segments.size() * sizeof(Elf64_Phdr)))
        return std::nullopt;
    for (const Elf64_Phdr& segment : segments)
        if (!file.holds(segment.p_offset, segment.p_filesz)) return std::nullopt;
    return segments;
}

/// Collects the texts of one segment of notes; the first of a number counts, and numbers that are
/// too high are passed over. Ends where a note would reach beyond the segment.
void collectTexts(std::string_view notes, std::uint64_t alignment,
                  std::map<unsigned, std::string>& texts)
{
    const auto aligned = [&](std::uint64_t size) {
        return (size + alignment - 1) / alignment * alignment;
    };
    while (notes.size() >= sizeof(Elf64_Nhdr))
    {
        Elf64_Nhdr note;
        std::memcpy(&note, notes.data(), sizeof note);
        notes.remove_prefix(sizeof note);
        const std::uint64_t nameSize = aligned(note.n_namesz);
        if (nameSize > notes.size() || note.n_descsz > notes.size() - nameSize) return;
        const std::string_view text = notes.substr(nameSize, note.n_descsz);
        if (notes.substr(0, note.n_namesz) == kOwner && note.n_type <= ModuleImage::kMostNumber)
            texts.emplace(note.n_type, text.substr(0, text.find('\0')));
        notes.remove_prefix(
            std::min<std::uint64_t>(nameSize + aligned(note.n_descsz), notes.size()));
    }
}

std::map<unsigned, std::string> readTexts(const ReadOnlyFile& file,
                                          const std::vector<Elf64_Phdr>& segments)
{
    std::map<unsigned, std::string> texts;
    std::uint64_t left = kMostNoteBytes; // segments may lie over one another
    for (const Elf64_Phdr& segment : segments)
    {
        if (segment.p_type != PT_NOTE || segment.p_filesz > left) continue;
        left -= segment.p_filesz;
        std::string notes(segment.p_filesz, '\0');
        if (file.read(segment.p_offset, notes.data(), notes.size()))
            collectTexts(notes, segment.p_align == 8 ? 8 : 4, texts);
    }
    return texts;
}

} // namespace

ModuleImage::ModuleImage(const std::string& path)
{
    const ReadOnlyFile file(path);
    if (file.error() != 0)
        error_ = std::strerror(file.error());
    else if (const auto segments = readSegments(file))
        texts_ = readTexts(file, *segments);
    else
        error_ = std::strerror(ENOEXEC);
}

std::string ModuleImage::text(unsigned number, std::size_t most) const
{
    const auto found = texts_.find(number);
    return found == texts_.end() ? std::string() : found->second.substr(0, most);
}

} // namespace Tolmen::Platform
