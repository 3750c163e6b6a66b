#include "program/grd_plt.h"

int main(int argc, char** argv) { return zav::GRD_main(argc, argv); }
