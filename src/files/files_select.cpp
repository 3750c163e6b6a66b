// The choice of the data file, and of what to do with an existing output file.

#include <string>
#include <vector>

#include "files/files.h"
#include "files/files_state.h"
#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/system.h"

namespace zav {
namespace {

constexpr int PROMPTS = 4;

void report_current() { MESS_print(MESS_PROGRESS, "Current filename: %s\n", naming().filename.c_str()); }

void report_missing() { MESS_print(MESS_WARN, "File not found: %s\n", naming().filename.c_str()); }

/// True for a file that exists and for a stream with something in it.
bool is_there(const std::string& name) {
    if (!FILE_is_stream(name)) return FILE_exist(name) != 0;
    const std::string kept = FILE_keep_stream(name);
    return !kept.empty() && FILE_size(kept) > 0;
}

/// The file of a rule. Ends the program if it isn't there.
int take_rule(const char* rule) {
    std::string name;
    FILE_set_current(rule, name);
    if (!FILE_exist(naming().filename)) {
        report_missing();
        ZAV_exit(STATUS_NO_GRID);
    }
    report_current();
    return 1;
}

int take_given(const std::string& text) {
    if (stricmp(text, "list") == 0) {
        FILE_list_file();
        ZAV_exit(0);
    }
    std::string name;
    naming().filename_type = 1;
    FILE_set_file(text, name);
    return is_there(naming().filename);
}

void show_list() {
    MESS_print(MESS_PRINT, "List of available files:\n");
    FILE_list_file();
    MESS_print(MESS_PRINT, "\n");
}

/// Establishes the file of an answer.
void take_answer(const std::string& text) {
    std::string name;
    if (is_time_rule(text)) {
        FILE_set_current(text.c_str() + rule_start(text), name);
        report_current();
        return;
    }
    FILE_set_file(text, name);
}

int ask_file(const std::string& prompt) {
    show_list();
    for (int attempt = 0; attempt < PROMPTS; attempt++) {
        naming().filename_type = 1;
        std::string text;
        ZAV_prompts(prompt, text, 79);
        if (stricmp(text, "exit") == 0) ZAV_exit(0);
        if (stricmp(text, "list") == 0) {
            FILE_list_file();
            continue;
        }
        if (text.empty()) continue;  // an empty name would mean standard input
        take_answer(text);
        if (is_there(naming().filename)) return 1;
        report_missing();
    }
    ZAV_exit(STATUS_NO_GRID);
}

/// 1 to overwrite, 2 to append, 3 to use, by the first letter of an answer.
int overwrite_answer(const std::string& text, bool may_append) {
    const char letter = text.empty() ? '\0' : text[0];
    if (letter == 'Y' || letter == 'y' || letter == 'O' || letter == 'o') return 1;
    if (may_append && (letter == 'A' || letter == 'a')) return 2;
    return 3;
}

}  // namespace

int FILE_get_file(const std::string& prompt, std::string& outfile) {
    const int found = FILE_get_file(prompt);
    outfile = naming().filename;
    return found;
}

int FILE_get_file(const std::string& prompt) {
    std::vector<std::string> words;
    if (RES_getvals("filename", words) > 0) return take_given(words[0]);
    const char* rule = RES_get("current");
    if (rule != nullptr) return take_rule(rule);
    if (FLAG_batch()) return take_rule("la");
    return ask_file(prompt);
}

int FILE_overwrite(const std::string& filename, int flag) {
    if (FILE_is_stdio(filename) || !FILE_exist(filename)) return 1;
    const int policy = FLAG_get(FLAG_FILE_POLICY);
    if (policy >= 1) return policy;
    if (FLAG_batch()) return 3;
    if (flag != 1 && flag != 2) return 0;
    const std::string choices = flag == 2 ? "(Y,N,Use,Over,App): " : "(Y,N,Use,Over): ";
    std::string answer;
    ZAV_prompts(filename + ": exists overwrite " + choices, answer, 10);
    return overwrite_answer(answer, flag == 2);
}

}  // namespace zav
