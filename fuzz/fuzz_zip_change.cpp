// Removes every other member from an archive: the remaining ones read the same as before.

#include "archive/changing/archive_change.h"
#include "archive/container/member_reader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

namespace zip = quill::zip;

/// Keeps the new archive's bytes and leaves the old one unchanged.
class Kept final : public zip::ArchiveOutput {
  public:
    Kept(std::unique_ptr<zip::ArchiveOutput> output, std::string& bytes) : output_(std::move(output)), bytes_(bytes) {}

    quill::Status write(std::string_view bytes) override { return output_->write(bytes); }
    quill::Result<quill::files::MappedFile> read_back() override { return output_->read_back(); }
    quill::Status publish(bool) override {
        bytes_ = output_->read_back()->bytes();
        return quill::Done{};
    }

  private:
    std::unique_ptr<zip::ArchiveOutput> output_;
    std::string& bytes_;
};

/// The archive of each run; removed at the end.
struct Input {
    std::string path = std::filesystem::temp_directory_path() / ("fuzz." + std::to_string(getpid()));
    ~Input() { std::filesystem::remove(path); }
};

/// Returns the beginning of a member's content, and the result of reading it.
std::string content_of(const zip::Archive& archive, std::size_t number) {
    std::string out;
    zip::MemberReader reader(archive, "password");
    const auto content = reader.read(archive.members()[number], [&](std::string_view bytes) {
        out += bytes;
        return out.size() < 1U << 20U;
    });
    return out.append(name_of(content.verdict));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Input input;
    const std::string& path = input.path;
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    std::string changed;
    auto change = zip::ArchiveChange::begin(path, [&](const std::string& p) {
        auto output = zip::output_beside(p);
        if (!output) return output;
        return quill::Result(std::unique_ptr<zip::ArchiveOutput>(std::make_unique<Kept>(std::move(*output), changed)));
    });
    const auto before = zip::Archive::parse({reinterpret_cast<const char*>(data), size});
    if (!change || !before || before->members().size() > 64) return 0;
    std::vector<std::size_t> dropped, kept;
    for (std::size_t i = 0; i < before->members().size(); ++i) (i % 2 == 0 ? dropped : kept).push_back(i);
    if (dropped.empty() || !change->remove(dropped) || !change->finish()) return 0;
    const auto after = zip::Archive::parse(changed);
    if (!after || after->members().size() != kept.size()) std::abort();
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (content_of(*before, kept[i]) != content_of(*after, i)) std::abort();
    }
    return 0;
}
