#include "physics/thermo.h"

namespace zav {}
