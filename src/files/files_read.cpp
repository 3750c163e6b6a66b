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

/// What a piece of the template makes of a walk.
enum class Step {
    next,    // it fitted
    rest,    // it takes the rest of the text as it stands
    misfit,  // the text isn't of the template's form
};

/// A given text on its way along a template.
struct Walk {
    const std::string text;
    const std::vector<Piece> pieces;
    /// The template's fixed text in front of a date replaces as many characters of the text that differ; otherwise it
    /// is added.
    const bool replaces;

    std::size_t at = 0;        // in the template
    std::size_t pos = 0;       // in the text
    std::string out{};         // the name so far
    std::size_t path_out = 0;  // lengths of name and text up to the end of the last path
    std::size_t path_pos = 0;
    Where where = Where::start;

    bool text_left() const { return pos < text.size(); }
};

bool is_separator(char c) { return c == '/' || c == '\\' || c == ':'; }

bool digits_at(const std::string& text, std::size_t at, std::size_t count) {
    if (at + count > text.size()) return false;
    return std::all_of(text.begin() + at, text.begin() + at + count, [](char c) { return c >= '0' && c <= '9'; });
}

/// A date field of names. A month name is the one that has letters.
struct Date_field {
    char code;
    std::size_t width;
    int low;
    int high;
    void (*store)(int value, Date& date);
};
constexpr char MONTH_NAME = 'b';
constexpr std::array<Date_field, 8> DATE_FIELDS = {{
    {'Y', 4, 0, 9999, [](int value, Date& date) { date.year = value; }},
    {'y', 2, 0, 99, [](int value, Date& date) { date.year = value < 50 ? 2000 + value : 1900 + value; }},
    {'m', 2, 1, 12, [](int value, Date& date) { date.month = value; }},
    {MONTH_NAME, 3, 1, 12, [](int value, Date& date) { date.month = value; }},
    {'d', 2, 1, 31, [](int value, Date& date) { date.day = value; }},
    {'j', 3, 1, 366, [](int value, Date& date) { DATE_julian_monday(date.year, value, &date.month, &date.day); }},
    {'h', 2, 0, 23, [](int value, Date& date) { date.hour = value; }},
    {'n', 2, 0, 59, [](int value, Date& date) { date.min = value; }},
}};

Step take_date(Walk& walk, const Piece& piece) {
    const auto* field = std::find_if(DATE_FIELDS.begin(), DATE_FIELDS.end(),
                                     [&](const Date_field& row) { return row.code == piece.code; });
    if (field == DATE_FIELDS.end() || walk.pos + field->width > walk.text.size()) return Step::misfit;
    const bool letters = field->code == MONTH_NAME;
    if (!letters && !digits_at(walk.text, walk.pos, field->width)) return Step::misfit;
    const std::string word = walk.text.substr(walk.pos, field->width);
    const int value = letters ? DATE_decode_month(word) : text_to_int(word);
    if (value < field->low || value > field->high) return Step::misfit;
    field->store(value, naming().file_date);
    note_step(piece);
    walk.out += word;
    walk.pos += field->width;
    walk.where = Where::dated;
    return Step::next;
}

/// Plain template text behind the present piece, up to the next special one.
std::string text_behind(const Walk& walk) {
    std::string behind;
    for (std::size_t i = walk.at + 1; i < walk.pieces.size() && walk.pieces[i].kind == Piece::Kind::plain; i++)
        behind += walk.pieces[i].code;
    return behind;
}

/// The text moves behind an extension that is known, as far as it holds it.
void pass_known_ext(Walk& walk, const std::string& ext, std::size_t end) {
    const bool bounded = walk.at + 1 == walk.pieces.size() || !text_behind(walk).empty();
    if (bounded && end != std::string::npos) {
        walk.pos = end;
    } else if (!bounded && walk.text.compare(walk.pos, ext.size(), ext) == 0) {
        walk.pos += ext.size();
    }
}

Step take_ext(Walk& walk, const Piece& /*piece*/) {
    std::string& ext = naming().ext;
    const std::string behind = text_behind(walk);
    const bool last = walk.at + 1 == walk.pieces.size();
    const std::size_t end = last ? walk.text.size() : behind.empty() ? walk.pos : walk.text.find(behind, walk.pos);
    if (!ext.empty()) {
        walk.out += ext;
        pass_known_ext(walk, ext, end);
        return Step::next;
    }
    if (end == std::string::npos) return Step::misfit;
    ext = fit_text(walk.text.substr(walk.pos, end - walk.pos), EXT_SIZE);
    walk.out += ext;
    walk.pos = end;
    return Step::next;
}

/// End of the directory in a full path: as many slashes follow as the template has separators behind piece `first`.
/// std::string::npos if there are fewer.
std::size_t directory_end(const Walk& walk, std::size_t first) {
    long left = 1 + std::count_if(walk.pieces.begin() + std::min(first, walk.pieces.size()), walk.pieces.end(),
                                  [](const Piece& p) { return p.kind == Piece::Kind::plain && is_separator(p.code); });
    for (std::size_t end = walk.text.size(); end > walk.pos; end--) {
        const bool drive = end == 2 && walk.text[1] == ':';
        if (walk.text[end - 1] != '/' && !drive) continue;
        if (--left == 0) return end;
    }
    return std::string::npos;
}

/// A directory: that of the text if it is a full path, else the one of the resource.
Step take_path(Walk& walk, const Piece& piece) {
    const std::size_t next = walk.at + 1;
    const bool slash_follows =
        next < walk.pieces.size() && walk.pieces[next].kind == Piece::Kind::plain && walk.pieces[next].code == '/';
    if (FILE_fullpath(walk.text)) {
        const std::size_t end = directory_end(walk, slash_follows ? next + 1 : next);
        if (end == std::string::npos) return Step::misfit;
        walk.out += walk.text.substr(walk.pos, end - walk.pos);
        walk.pos = end;
    } else {
        walk.out += path_value(piece);
        if (slash_follows) FILE_add_path_delim(walk.out);
    }
    if (slash_follows) walk.at = next;
    walk.where = Where::settled;
    walk.path_out = walk.out.size();
    walk.path_pos = walk.pos;
    return Step::next;
}

Step take_key(Walk& walk, const Piece& piece) {
    if (FILE_get_key(piece.code).empty()) return Step::misfit;
    const std::string value = key_text(piece);
    walk.out += value;
    walk.pos = std::min(walk.pos + value.size(), walk.text.size());
    return Step::next;
}

Step take_plain(Walk& walk, const Piece& piece) {
    const bool left = walk.text_left();
    const bool same = !piece.optional && left && walk.text[walk.pos] == piece.code;
    const bool must_fit = walk.where == Where::start || (walk.where >= Where::dated && left);
    if (!piece.optional && !same && must_fit) return Step::misfit;
    walk.out += piece.code;
    if (piece.optional) return Step::next;
    if (same || (walk.replaces && left)) walk.pos++;
    if (same && walk.where != Where::start && !walk.text_left()) walk.where = Where::finished;
    return Step::next;
}

Step take_percent(Walk& walk, const Piece& /*piece*/) {
    walk.out += '%';
    return Step::next;
}

Step start_group(Walk& /*walk*/, const Piece& /*piece*/) { return Step::next; }

Step end_group(Walk& walk, const Piece& /*piece*/) {
    walk.where = Where::settled;
    return Step::next;
}

Step take_resource(Walk& /*walk*/, const Piece& /*piece*/) { return Step::misfit; }

Step take_rest(Walk& /*walk*/, const Piece& /*piece*/) { return Step::rest; }

/// What is done with a piece of each kind, in the order of Piece::Kind.
constexpr std::array<Step (*)(Walk&, const Piece&), 10> TAKERS = {take_plain, take_percent, take_date,     take_ext,
                                                                  take_path,  take_key,     take_resource, start_group,
                                                                  end_group,  take_rest};

Step take_pieces(Walk& walk) {
    for (; walk.at < walk.pieces.size(); walk.at++) {
        const Piece& piece = walk.pieces[walk.at];
        const Step step = TAKERS[static_cast<std::size_t>(piece.kind)](walk, piece);
        if (step != Step::next) return step;
    }
    return walk.text_left() ? Step::misfit : Step::next;
}

/// The name that a text and a template make.
struct Walked {
    std::string name;
    bool fits;  ///< the text was of the template's form to its end
};

/// Completes a text by a template. The date goes to the file date, the period to the step of the template. A text that
/// doesn't fit comes out unchanged behind the path.
Walked walk_text(const std::string& text, const std::string& conv, bool replaces) {
    Walk walk{text, parse_template(conv), replaces};
    naming().late_off = MISS;
    const Step step = take_pieces(walk);
    if (step == Step::next) return {walk.out, true};
    if (step == Step::misfit) {
        walk.out.resize(walk.path_out);
        walk.pos = walk.path_pos;
    }
    return {walk.out + text.substr(walk.pos), false};
}

/// Cuts "#YYYYMMDDHHNN" off a text and adds it to the forced date. In a rule the mark has a meaning of its own.
void take_forced_suffix(std::string& text) {
    const std::size_t sharp = text.find('#', 1);
    if (sharp == std::string::npos || is_time_rule(text)) return;
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
    const Walked walked = walk_text(text, conv, bare);
    if (walked.fits) return set_plain(walked.name);
    if (!bare) return set_odd(walked.name);

    // A bare text may also lack the template's fixed part in front.
    const NamingState after = names;
    names = before;
    const Walked longer = walk_text(text, conv, false);
    if (longer.fits) return set_plain(longer.name);
    names = after;
    set_odd(walked.name);
}

void take_text(const std::string& text) {
    const std::string conv = current_template();
    if (text.starts_with('@')) return set_given(text.substr(1));
    if (text.starts_with('|')) return set_given(text);
    if (FILE_is_stdio(text) || (!conv.empty() && FILE_is_stdio(conv))) return set_plain("-");
    if (conv.empty()) return set_given(text);
    if (is_time_rule(text)) return set_by_rule(text.substr(rule_start(text)));
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
