#include "archive/changing/archive_output.h"

#include "files/atomic_file.h"

#include <utility>

namespace quill::zip {
namespace {

class FileOutput final : public ArchiveOutput {
  public:
    explicit FileOutput(files::AtomicFile file) : file_(std::move(file)) {}

    Status write(std::string_view bytes) override {
        if (!file_.write(bytes)) return file_.error();
        return Done{};
    }
    Result<files::MappedFile> read_back() override { return file_.read_back(); }
    Status publish(bool is_new) override {
        if (!is_new) return file_.publish_as_rewrite();
        const Result<std::string> published = file_.publish(files::OnCollision::fail, files::Durability::flushed);
        if (!published) return published.error();
        return Done{};
    }

  private:
    files::AtomicFile file_;
};

}  // namespace

Result<std::unique_ptr<ArchiveOutput>> output_beside(const std::string& path) {
    Result<files::AtomicFile> file = files::AtomicFile::create(path, files::Access::of_old);
    if (!file) return file.error();
    return std::unique_ptr<ArchiveOutput>(std::make_unique<FileOutput>(std::move(*file)));
}

}  // namespace quill::zip
