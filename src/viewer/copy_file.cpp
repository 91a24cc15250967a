#include "viewer/copy_file.h"

#include "files/atomic_file.h"
#include "files/mapped_file.h"
#include "files/path.h"

namespace quill::viewer {

Result<std::string> copy_into(const std::string& source, const std::string& directory) {
    const Result<files::MappedFile> bytes = files::MappedFile::open(source);
    if (!bytes) return bytes.error();
    Result<files::AtomicFile> copy = files::AtomicFile::create(files::join(directory, files::name_of(source)));
    if (!copy) return copy.error();
    copy->write(bytes->bytes());
    if (bytes->cut_short() || bytes->changed()) return files::changed_while_read();
    return copy->publish(files::OnCollision::choose_name, files::Durability::flushed);
}

void say_where_copied(platform::Platform& platform, const std::string& source, const std::string& directory) {
    const Result<std::string> copy = copy_into(source, directory);
    if (!copy) {
        platform.warn(files::name_of(source) + " could not be copied: " + copy.error().text + ".");
    } else if (files::name_of(*copy) != files::name_of(source)) {
        platform.message("There is a file of that name already. The copy is called " + files::name_of(*copy) + ".");
    }
}

}  // namespace quill::viewer
