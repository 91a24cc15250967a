#include "viewer/album_run.h"

#include "files/path.h"
#include "viewer/file_run.h"

#include <cstddef>
#include <utility>
#include <variant>
#include <vector>

namespace quill::viewer {
namespace {

/// Finds the picture being copied from the number of album bytes written.
class PlaceInAlbum {
  public:
    explicit PlaceInAlbum(const pics::AlbumRequest& request) : size_(pics::album_size(request)) {
        std::uint64_t end = size_;
        if (request.form == pics::Form::plain) end -= request.items.size() * pics::record_size;
        for (auto item = request.items.rbegin(); item != request.items.rend(); ++item) {
            ends_.push_back(end);
            end -= item->size;
        }
    }

    std::uint64_t size() const { return size_; }
    std::size_t picture_at(std::uint64_t done) {
        while (ends_.size() > 1 && done >= ends_.back()) {
            ends_.pop_back();
            ++picture_;
        }
        return picture_;
    }

  private:
    std::uint64_t size_;
    std::vector<std::uint64_t> ends_;  ///< of the pictures not copied yet, the last one first
    std::size_t picture_ = 0;
};

}  // namespace

AlbumEnd run_album(shell::Context& context, pics::AlbumRequest request) {
    const std::string name = files::name_of(request.path);
    const std::size_t count = request.items.size();
    PlaceInAlbum place(request);
    std::variant<std::string, pics::WriteFailure> written;
    {
        FileRun run(context, "Making " + name);
        request.watch = [&](std::uint64_t done) {
            return run.goes_on(done, place.size(), place.picture_at(done), count);
        };
        written = pics::write_album(request);
    }
    const auto* const failure = std::get_if<pics::WriteFailure>(&written);
    if (failure == nullptr) return AlbumEnd::made;
    if (failure->error.code == ErrorCode::exists) {
        context.platform.message("A file named " + name +
                                 " already exists in this directory. Select a different name or change to a different "
                                 "directory.");
        return AlbumEnd::name_taken;
    }
    if (failure->error.code != ErrorCode::cancelled) {
        const std::string what = failure->item ? request.items[*failure->item].path + ": " : std::string();
        context.platform.warn(name + " could not be written: " + what + failure->error.text + ".");
    }
    return AlbumEnd::not_made;
}

}  // namespace quill::viewer
