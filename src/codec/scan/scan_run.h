#pragma once

#include "codec/input/line_cursor.h"
#include "codec/mail/entity_stack.h"
#include "codec/mail/header_block.h"
#include "codec/recovery/found_file.h"
#include "codec/scan/text_scan.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quill::codec {

/// One pass over a text: the open parts of messages, and the files found so far.
class Scanner {
  public:
    Scanner(LineCursor& cursor, Texts texts, std::size_t room, std::uint32_t part_number)
        : cursor_(cursor), is_stop_([this](const Line& line) { return is_stop(line); }), text_{cursor, is_stop_,
                                                                                               found_, texts,
                                                                                               room,   part_number} {}

    Found run();

  private:
    bool is_stop(const Line& line) const;
    bool begins_message(const Line& line) const;
    void keep_stated_length(const HeaderBlock& block);
    bool is_guessed_boundary(const Line& line) const;

    bool take_boundary(const Line& line);
    void cross_boundary(EntityStack::Match match, Position data_end, Position begin);
    bool take_guessed_boundary(const Line& line);
    bool take_misplaced_boundary(const Line& line);
    bool take_unannounced_header(const Line& line);
    bool take_next_piece(const Line& line);
    bool take_message(const Line& line);
    bool take_embedded_header(const Line& line);
    void take_label(std::string_view line);
    void take_text(const Line& line);
    void follow_data(const Line& line);

    void begin_message();
    void open_part(bool in_digest, bool embedded);
    void open_multipart(ContentHeader header);
    void report_too_deep();
    void open_leaf(HeaderBlock block, bool embedded);
    void close_as_text(Level& level);
    void close_leaf(Level& level, Position end, bool cut_off);
    void pop_to(std::size_t level, Position end, bool cut_off);
    void report_text_behind(const Leaf& leaf, Attachment& attachment) const;
    FoundFile file_of(const Leaf& leaf, Position end) const;
    void name_wrapped(const Leaf& leaf);

    LineCursor& cursor_;
    IsStop is_stop_;
    Found found_;
    TextScan text_;
    EntityStack stack_;
    bool too_deep_ = false;
    Position message_end_;  ///< of the current message, if its header states it
    Position line_begin_;   ///< of the current line; after the last one at the end
};

}  // namespace quill::codec
