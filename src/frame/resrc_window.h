#pragma once

#include <string>
#include <vector>

#include "frame/resrc.h"

namespace zav {

/// The link to a loop window: a program that holds resources for the programs that it runs.
class LoopWindow {
  public:
    /// Links to window `name`, takes the values that it holds into the resources and teaches it the ones that it lacks.
    void open(const std::string& name, const std::vector<RES_defobj>& rows);
    bool linked() const { return linked_; }
    /// Hands a value to the window and awaits its reply.
    void set(const std::string& name, const std::string& value);
    /// Ends the link.
    void quit();

  private:
    void ask(const std::vector<RES_defobj>& rows);
    bool take_reply(int row, const RES_defobj& def);
    void await_reply();

    bool linked_ = false;
    int queue_ = -1;
    int connection_ = -1;
};

}  // namespace zav
