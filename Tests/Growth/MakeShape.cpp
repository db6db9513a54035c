#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "PlanShapes.h"

// make-shape NAME N >plan.xml: a plan of a shape, for counting its instructions with other tools; without arguments the
// names of all shapes.
int main(int argc, char** argv) {
    for (const auto shapes : {shapesOnceQuadratic(), shapesOfLists(), shapesOfLeaves()}) {
        for (const auto& shape : shapes) {
            if (argc < 3) {
                std::puts(shape.name);
            } else if (std::string_view(argv[1]) == shape.name) {
                std::fputs(shape.plan(std::atoi(argv[2])).c_str(), stdout);
            }
        }
    }
}
