#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/system.h"
#include "frame/tools.h"

namespace zav {
namespace {

constexpr std::size_t LINE_SIZE = 79;
constexpr std::size_t WORD_SIZE = 20;
constexpr M_type SET_LEVEL = 2048;
constexpr const char* BLANKS = " \t\v\f";

[[noreturn]] void end_at(std::string prompt) {
    trim_string(prompt);
    const int status = ZAV_input_ended();
    if (status != 0) MESS_print(MESS_WARN, "\nThe input ends at the question: %s\n", prompt.c_str());
    ZAV_exit(status);
}

/// Shows a prompt and reads a line, trimmed. What a line holds beyond its limit is dropped, so that it doesn't answer
/// the next question. The end of the input ends the program.
std::string read_answer(const std::string& prompt) {
    MESS_print(MESS_PRINT, "%s", prompt.c_str());
    std::fflush(stdout);
    std::string line;
    int c = std::getchar();
    if (c == EOF) end_at(prompt);
    for (; c != EOF && c != '\n'; c = std::getchar()) {
        if (line.size() < LINE_SIZE && c != '\0') line += static_cast<char>(c);
    }
    wstrim_string(line);
    return line;
}

std::string first_word(const std::string& line, std::size_t size) {
    const std::size_t start = line.find_first_not_of(BLANKS);
    if (start == std::string::npos) return {};
    const std::size_t end = std::min(line.find_first_of(BLANKS, start), line.size());
    return fit_text(std::string_view(line).substr(start, end - start), size);
}

/// Reads lines until one holds a value or is empty. `read` takes a line and gives 1 for a value; it fills `command`
/// with the text that may be a prompt command. False for an empty line.
template <class Read>
bool prompt_until(const std::string& prompt, const Read& read) {
    while (true) {
        const std::string line = read_answer(prompt);
        if (line.empty()) return false;
        std::string command = line;
        const bool has_value = read(line, command);
        if (ZAV_set_command(command) == 0 && has_value) return true;
    }
}

}  // namespace

std::string& ZAV_promptl(const std::string& prompt, std::string& str) {
    std::string word;
    const bool answered = prompt_until(prompt, [&](const std::string& line, std::string& command) {
        command = word = first_word(line, WORD_SIZE);
        return !word.empty();
    });
    if (answered) str = word;
    return str;
}

std::string& ZAV_prompts(const std::string& prompt, std::string& str, int length) {
    std::string word;
    const bool answered = prompt_until(prompt, [&](const std::string& line, std::string&) {
        word = first_word(line, static_cast<std::size_t>(std::max(length, 2)));
        return !word.empty();
    });
    if (answered) str = word;
    return str;
}

float ZAV_promptf(const std::string& prompt) {
    float value = 0;
    const bool answered = prompt_until(prompt, [&](const std::string& line, std::string&) {
        char* end = nullptr;
        value = std::strtof(line.c_str(), &end);
        return end != line.c_str() && std::isfinite(value);
    });
    return answered ? value : 0;
}

int ZAV_promptd(const std::string& prompt) {
    int value = 0;
    const bool answered = prompt_until(prompt, [&](const std::string& line, std::string&) {
        char* end = nullptr;
        std::strtol(line.c_str(), &end, 10);
        value = text_to_int(line);
        return end != line.c_str();
    });
    return answered ? value : 0;
}

int ZAV_set_command(const std::string& string) {
    if (strnicmp(string, "exit", 4) == 0) ZAV_exit(0);
    if (strnicmp(string, "set", 3) != 0) return 0;

    // The first word is the command, whatever follows its three letters.
    const std::size_t behind = std::min(string.find_first_of(BLANKS), string.size());
    const std::size_t start = std::min(string.find_first_not_of(BLANKS, behind), string.size());
    const std::size_t end = std::min(string.find_first_of("= ", start), string.size());
    const std::string name = fit_text(std::string_view(string).substr(start, end - start), WORD_SIZE);
    if (name.empty()) {
        MESS_print(SET_LEVEL, "Set resources\n");
        RES_list();
        MESS_print(SET_LEVEL, "\n");
    } else {
        RES_put(name, string.substr(std::min(string.find_first_not_of("= ", end), string.size())));
    }
    return 1;
}

}  // namespace zav
