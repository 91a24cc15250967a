#include "pics/writing.h"

#include "files/directory.h"
#include "files/mapped_file.h"
#include "pics/record.h"

#include <numeric>
#include <utility>

namespace quill::pics {
namespace {

using files::AtomicFile;

std::string header(Form form) {
    std::string out(header_start);
    return out.append(form == Form::plain ? "xyz" : "abc").append(header_end);
}

std::string thumbnail_slot(const MakeThumbnail& make, const Item& item) {
    std::string bytes = make ? make(item) : std::string();
    bytes.resize(thumbnail_size);
    return bytes;
}

/// Writes the parts of one album in order.
class Writing {
  public:
    Writing(const AlbumRequest& request, AtomicFile& file) : request_(request), file_(file) {}

    std::optional<WriteFailure> run() {
        file_.write(header(request_.form));
        if (request_.form == Form::with_thumbnails && !write_units()) return cancelled();
        for (std::size_t i = 0; i < request_.items.size(); ++i) {
            if (std::optional<WriteFailure> failure = copy_picture(i)) return failure;
        }
        if (request_.form == Form::plain) write_directory();
        if (file_.failed()) return WriteFailure{{}, file_.error()};
        return std::nullopt;
    }

  private:
    static WriteFailure cancelled() { return {{}, {ErrorCode::cancelled, 0, "Stopped"}}; }

    bool write_units() {
        for (const Item& item : request_.items) {
            if (request_.watch && !request_.watch(file_.size())) return false;
            file_.write(make_record(thumbnail_name(stored_text(item.name)), item.size));
            file_.write(thumbnail_slot(request_.thumbnail, item));
        }
        return true;
    }

    std::optional<WriteFailure> copy_picture(std::size_t i) {
        const Item& item = request_.items[i];
        const Result<files::MappedFile> source = files::MappedFile::open(item.path);
        if (!source) return WriteFailure{i, source.error()};
        if (source->bytes().size() != item.size) return WriteFailure{i, files::changed_while_read()};
        const std::uint64_t before = file_.size();
        const auto watch = [&](std::uint64_t done) { return !request_.watch || request_.watch(before + done); };
        const Result<std::uint64_t> copied = file_.copy(*source, 0, item.size, watch);
        if (!copied) return WriteFailure{{}, copied.error()};
        if (*copied != item.size) return WriteFailure{i, files::changed_while_read()};
        return std::nullopt;
    }

    void write_directory() {
        for (std::size_t i = request_.items.size(); i-- > 0;) {
            file_.write(make_record(stored_text(request_.items[i].name), request_.items[i].size));
        }
    }

    const AlbumRequest& request_;
    AtomicFile& file_;
};

}  // namespace

std::vector<WriteFailure> measure(std::vector<Item>& items) {
    std::vector<WriteFailure> failures;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Result<files::MappedFile> file = files::MappedFile::open(items[i].path);
        if (file) {
            items[i].size = file->bytes().size();
        } else {
            failures.push_back({i, file.error()});
        }
    }
    return failures;
}

std::uint64_t album_size(const AlbumRequest& request) {
    const std::size_t each = request.form == Form::plain ? record_size : unit_size;
    return std::accumulate(request.items.begin(), request.items.end(), std::uint64_t{header_size},
                           [&](std::uint64_t sum, const Item& item) { return sum + each + item.size; });
}

std::variant<std::string, WriteFailure> write_album(const AlbumRequest& request) {
    Result<AtomicFile> file = AtomicFile::create(request.path);
    if (!file) return WriteFailure{{}, file.error()};
    if (std::optional<WriteFailure> failure = Writing(request, *file).run()) return *std::move(failure);
    const std::optional<std::uint64_t> old_size = files::file_size(request.path);
    const bool is_free = old_size && *old_size <= 1 && !files::is_link(request.path);
    Result<std::string> published = file->publish(is_free ? files::OnCollision::replace : request.on_collision);
    if (!published) return WriteFailure{{}, published.error()};
    return *std::move(published);
}

}  // namespace quill::pics
