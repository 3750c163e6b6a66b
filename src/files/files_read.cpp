// From a text to a name and a date: FILE_set_file.

#include <algorithm>
#include <array>

#include "files/files.h"
#include "files/files_state.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "frame/system.h"

namespace zav {
namespace {

/// How the given text relates to the template so far.
enum class Where {
    start,     // nothing has fitted yet
    settled,   // behind a path or an optional group
    dated,     // behind a date field
    finished,  // the text has run out
};

bool is_separator(char c) { return c == '/' || c == '\\' || c == ':'; }

bool digits_at(const std::string& text, std::size_t at, std::size_t count) {
    if (at + count > text.size()) return false;
    return std::all_of(text.begin() + at, text.begin() + at + count, [](char c) { return c >= '0' && c <= '9'; });
}

/// One walk of a given text along a template.
class Walk {
  public:
    /// With `replaces` the template's fixed text in front of a date replaces as many characters of the text that
    /// differ; otherwise it is added.
    Walk(const std::string& text, const std::string& conv, bool replaces)
        : text_(text), pieces_(parse_template(conv)), full_(FILE_fullpath(text)), replaces_(replaces) {}

    /// The completed name. The date goes to the file date, the step to the step of the template.
    std::string run() {
        for (at_ = 0; at_ < pieces_.size() && !ended_; at_++) take(pieces_[at_]);
        if (text_left()) misfit();
        return out_;
    }
    /// True if the text didn't fit the template to its end.
    bool odd() const { return odd_; }

  private:
    bool text_left() const { return pos_ < text_.size(); }

    void take(const Piece& piece) {
        switch (piece.kind) {
            case Piece::Kind::rest:
                copy_rest();
                break;
            case Piece::Kind::percent:
                out_ += '%';
                break;
            case Piece::Kind::date:
                take_date(piece);
                break;
            case Piece::Kind::ext:
                take_ext();
                break;
            case Piece::Kind::path:
                take_path(piece);
                break;
            case Piece::Kind::key:
                take_key(piece);
                break;
            case Piece::Kind::resource:
                misfit();
                break;
            case Piece::Kind::group_start:
                in_group_ = true;
                break;
            case Piece::Kind::group_end:
                in_group_ = false;
                where_ = Where::settled;
                break;
            case Piece::Kind::plain:
                take_plain(piece.code);
                break;
        }
    }

    void copy_rest() {
        out_ += text_.substr(pos_);
        pos_ = text_.size();
        ended_ = true;
        odd_ = true;
    }

    /// The text isn't of the template's form: it comes out unchanged behind the path.
    void misfit() {
        out_.resize(kept_);
        pos_ = kept_pos_;
        copy_rest();
    }

    void take_date(const Piece& piece) {
        Date& date = naming().file_date;
        static constexpr std::string_view CODES = "Yjb";
        const std::size_t width = piece.code == 'Y' ? 4 : CODES.find(piece.code) != std::string_view::npos ? 3 : 2;
        const bool letters = piece.code == 'b';
        if (letters ? pos_ + width > text_.size() : !digits_at(text_, pos_, width)) return misfit();
        const std::string field = text_.substr(pos_, width);
        const int value = letters ? DATE_decode_month(field) : text_to_int(field);
        if (!in_range(piece.code, value)) return misfit();
        store(piece.code, value, date);
        note_step(piece);
        out_ += field;
        where_ = Where::dated;
        pos_ += width;
    }

    static bool in_range(char code, int value) {
        switch (code) {
            case 'm':
            case 'b':
                return value >= 1 && value <= 12;
            case 'd':
                return value >= 1 && value <= 31;
            case 'j':
                return value >= 1 && value <= 366;
            case 'h':
                return value <= 23;
            case 'n':
                return value <= 59;
            default:
                return true;
        }
    }

    static void store(char code, int value, Date& date) {
        switch (code) {
            case 'Y':
                date.year = value;
                break;
            case 'y':
                date.year = value < 50 ? 2000 + value : 1900 + value;
                break;
            case 'm':
            case 'b':
                date.month = value;
                break;
            case 'd':
                date.day = value;
                break;
            case 'j':
                DATE_julian_monday(date.year, value, &date.month, &date.day);
                break;
            case 'h':
                date.hour = value;
                break;
            default:
                date.min = value;
                break;
        }
    }

    /// Plain template text behind the present element, up to the next special one.
    std::string text_behind() const {
        std::string behind;
        for (std::size_t i = at_ + 1; i < pieces_.size() && pieces_[i].kind == Piece::Kind::plain; i++)
            behind += pieces_[i].code;
        return behind;
    }

    void take_ext() {
        std::string& ext = naming().ext;
        const std::string behind = text_behind();
        const bool last = at_ + 1 == pieces_.size();
        const std::size_t found = last ? text_.size() : behind.empty() ? pos_ : text_.find(behind, pos_);
        if (!ext.empty()) {
            out_ += ext;
            if (behind.empty() && !last) {
                if (text_.compare(pos_, ext.size(), ext) == 0) pos_ += ext.size();
            } else if (found != std::string::npos) {
                pos_ = found;
            }
            return;
        }
        if (found == std::string::npos) return misfit();
        ext = fit_text(text_.substr(pos_, found - pos_), EXT_SIZE);
        out_ += ext;
        pos_ = found;
    }

    void take_path(const Piece& piece) {
        const bool slash_follows =
            at_ + 1 < pieces_.size() && pieces_[at_ + 1].kind == Piece::Kind::plain && pieces_[at_ + 1].code == '/';
        if (full_) {
            if (!take_given_path(slash_follows)) return misfit();
        } else {
            out_ += path_value(piece);
            if (slash_follows) FILE_add_path_delim(out_);
        }
        if (slash_follows) at_++;
        where_ = Where::settled;
        kept_ = out_.size();
        kept_pos_ = pos_;
    }

    /// Takes the directory from the text: it ends so that as many slashes follow as the template has separators left.
    bool take_given_path(bool slash_follows) {
        const std::size_t first = at_ + (slash_follows ? 2 : 1);
        long left =
            1 + std::count_if(pieces_.begin() + std::min(first, pieces_.size()), pieces_.end(),
                              [](const Piece& p) { return p.kind == Piece::Kind::plain && is_separator(p.code); });
        for (std::size_t end = text_.size(); end > pos_; end--) {
            const bool drive = end == 2 && text_[1] == ':';
            if (text_[end - 1] != '/' && !drive) continue;
            if (--left > 0) continue;
            out_ += text_.substr(pos_, end - pos_);
            pos_ = end;
            return true;
        }
        return false;
    }

    void take_key(const Piece& piece) {
        if (FILE_get_key(piece.code).empty()) return misfit();
        const std::string value = key_text(piece);
        out_ += value;
        pos_ = std::min(pos_ + value.size(), text_.size());
    }

    void take_plain(char c) {
        if (in_group_) {
            out_ += c;
            return;
        }
        const bool same = text_left() && text_[pos_] == c;
        if (same) {
            out_ += c;
            pos_++;
            if (where_ != Where::start && !text_left()) where_ = Where::finished;
            return;
        }
        if (where_ == Where::start || (where_ >= Where::dated && text_left())) return misfit();
        out_ += c;
        if (replaces_ && text_left()) pos_++;
    }

    const std::string text_;
    const std::vector<Piece> pieces_;
    const bool full_;  // the text is a full path
    const bool replaces_;
    std::size_t at_ = 0;   // in the template
    std::size_t pos_ = 0;  // in the text
    std::string out_;
    std::size_t kept_ = 0;  // output and text up to the end of the last path
    std::size_t kept_pos_ = 0;
    Where where_ = Where::start;
    bool in_group_ = false;
    bool ended_ = false;
    bool odd_ = false;
};

bool is_rule(const std::string& text) {
    return text.starts_with('#') || strnicmp(text, "la", 2) == 0 || strnicmp(text, "cu", 2) == 0;
}

/// Cuts "#YYYYMMDDHHNN" off a text and adds it to the forced date. In a rule the mark has a meaning of its own.
void take_forced_suffix(std::string& text) {
    const std::size_t sharp = text.find('#', 1);
    if (sharp == std::string::npos || is_rule(text)) return;
    std::size_t at = sharp + 1;
    read_date_groups(text, at, naming().set);
    text.resize(sharp);
}

/// The forced fields that are dates; a period leaves its field unknown.
void start_file_date() {
    NamingState& names = naming();
    clear_file_fields(names.file_date);
    for (int Date::*field : {&Date::year, &Date::month, &Date::day, &Date::hour, &Date::min})
        if (names.set.*field >= 0) names.file_date.*field = names.set.*field;
}

void set_by_rule(const std::string& rule) {
    std::string name;
    FILE_set_current(rule.c_str(), name);
    MESS_print(MESS_PROGRESS, "Current filename: %s\n", name.c_str());
}

void set_plain(const std::string& name) { naming().filename = fit_text(name, FILE_NAME_SIZE); }

/// A name that isn't made by the template stays the name of its date.
void set_odd(const std::string& name) {
    NamingState& names = naming();
    set_plain(name);
    names.odd_name = names.filename;
    names.odd_date = names.file_date;
}

void set_given(const std::string& name) {
    set_odd(name);
    naming().filename_type = 1;
}

void walk_template(const std::string& text, const std::string& conv) {
    NamingState& names = naming();
    const NamingState before = names;
    const bool bare = text.find('/') == std::string::npos;
    names.late_off = MISS;
    Walk walk(text, conv, bare);
    const std::string name = walk.run();
    if (!walk.odd()) return set_plain(name);
    if (!bare) return set_odd(name);

    // A bare text may also lack the template's fixed part in front.
    const NamingState after = names;
    names = before;
    names.late_off = MISS;
    Walk adding(text, conv, false);
    const std::string longer = adding.run();
    if (!adding.odd()) return set_plain(longer);
    names = after;
    set_odd(name);
}

void take_text(const std::string& text) {
    const std::string conv = current_template();
    if (text.starts_with('@')) return set_given(text.substr(1));
    if (FILE_is_stdio(text) || (!conv.empty() && FILE_is_stdio(conv))) return set_plain("-");
    if (conv.empty()) return set_given(text);
    if (strnicmp(text, "cu", 2) == 0) return set_by_rule(text.substr(2));
    if (is_rule(text)) return set_by_rule(text);
    if (stricmp(text, "none") == 0) return set_plain("none");
    if (FILE_fullpath(conv) && FILE_fullpath(text)) return set_odd(text);
    walk_template(text, conv);
}

}  // namespace

int FILE_set_file(const std::string& file, std::string& out_file) {
    std::string text = file;
    take_forced_suffix(text);
    start_file_date();
    naming().odd_name.clear();
    if (stricmp(text, "exit") == 0) ZAV_exit(0);
    take_text(text);
    out_file = naming().filename;
    return 0;
}

}  // namespace zav
