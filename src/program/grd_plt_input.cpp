// Which files hold the grids: naming convention, input type and the list of models.

#include <algorithm>
#include <array>
#include <cstdio>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "grid/grd_tool.h"
#include "program/grd_plt.h"
#include "var/var_tool.h"

namespace zav {

namespace {

constexpr const char* DEFAULT_MODEL = "ngm";
/// Longest word of the list of models: more than the most pieces take, with their numbers.
constexpr int WORD_LENGTH = 499;

/// Models whose convention is named in lower case, however the user writes them.
constexpr std::array<const char*, 11> KNOWN_MODELS = {"ngm", "ngme",  "eta", "ruc", "lfm", "avn",
                                                      "mrf", "ecmwf", "sww", "sst", "sca"};

/// Words of the resources "in_file" and "input" for the type of the grid files.
struct Input_word {
    const char* word;
    bool prefix;  ///< in "in_file" the word may go on
    int format;   ///< flag FLAG_GRID_FORMAT
};
constexpr std::array<Input_word, 3> INPUT_WORDS = {{{"zav", true, 3}, {"cdf", true, 12}, {"grib", false, 23}}};

void set_model(const std::string& name, std::string& model) {
    model = name;
    VAR_set_model_str(name);
}

/// One piece of a model, "name" or "name#type", at its place in the layout.
GRD_spec make_piece(const std::string& text, int place, int columns, int type) {
    GRD_spec piece;
    piece.x = place % columns;
    piece.y = place / columns;
    piece.type = type;
    const std::size_t mark = text.find('#');
    piece.name = fit_text(text.substr(0, mark), GRD_SPEC_NAME);
    if (mark != std::string::npos) piece.type = text_to_int(text.substr(mark + 1));
    return piece;
}

void take_description(const std::string& layout, const std::string& list, int type) {
    GRD_specs& specs = GRD_get_specs();
    specs.nx = 1;
    specs.ny = 1;
    std::sscanf(layout.c_str(), "%9dx%9d", &specs.nx, &specs.ny);
    specs.nx = std::clamp(specs.nx, 1, GRD_SPEC_MAX);
    specs.ny = std::clamp(specs.ny, 1, GRD_SPEC_MAX);
    specs.nspec = 0;
    for (const std::string& piece : parse_string(list, ',')) {
        if (specs.nspec == GRD_SPEC_MAX) break;
        specs.spec[specs.nspec] = make_piece(piece, specs.nspec, specs.nx, type);
        specs.nspec++;
    }
    if (specs.nspec > 0) FILE_set_name(specs.spec[0].name);
}

/// Looks for the model in the open list; a line is three words, "#" starts a comment.
void search_model(std::FILE* file, const std::string& model, int type) {
    std::string name;
    std::string layout;
    std::string list;
    while (fgetword(file, name, WORD_LENGTH) > 0) {
        if (name[0] == '#') {
            fskiprest(file);
            continue;
        }
        if (fgetword(file, layout, WORD_LENGTH) < 0 || fgetword(file, list, WORD_LENGTH) < 0) return;
        if (stricmp(name, model) != 0) continue;
        take_description(layout, list, type);
        return;
    }
}

void set_convention(const std::string& model) {
    std::string name = model;
    for (const char* known : KNOWN_MODELS) {
        if (stricmp(model, known) == 0) name = known;
    }
    FILE_set_name("grib_" + name);
}

void take_input_words() {
    std::vector<std::string> words;
    RES_getvals("in_file", words);
    for (const std::string& word : words) {
        const auto* found = std::find_if(INPUT_WORDS.begin(), INPUT_WORDS.end(), [&](const Input_word& row) {
            return row.prefix ? strnicmp(word, row.word, 3) == 0 : stricmp(word, row.word) == 0;
        });
        if (found != INPUT_WORDS.end()) {
            FLAG_set(FLAG_GRID_FORMAT, found->format);
        } else {
            FILE_set_name(word);
            GRD_get_specs().spec[0].name = fit_text(word, GRD_SPEC_NAME);
        }
    }
    words.clear();
    RES_getvals("input", words);
    for (const std::string& word : words) {
        for (const Input_word& row : INPUT_WORDS) {
            if (stricmp(word, row.word) == 0) FLAG_set(FLAG_GRID_FORMAT, row.format);
        }
    }
}

}  // namespace

int GRD_in_file() {
    std::string model;
    set_model(DEFAULT_MODEL, model);
    const char* folder = RES_get("file_path");
    const file_ptr file = FILE_open(FILE_add_path(folder, "model.lup"), "r");
    if (file) {
        std::string word;
        if (fgetword(file.get(), word, WORD_LENGTH) > 0) set_model(word, model);
        std::rewind(file.get());
    }
    int type = MISS;
    RES_getval("grid_type", &type, CV_int);
    GRD_get_specs().nspec = 0;
    if (const char* given = RES_get("model")) {
        set_model(given, model);
        if (file) search_model(file.get(), model, type);
    }
    if (GRD_get_specs().nspec == 0) set_convention(model);
    take_input_words();
    if (const char* grid = RES_get("grid_num")) FILE_set_ext_info(grid);
    return 0;
}

}  // namespace zav
