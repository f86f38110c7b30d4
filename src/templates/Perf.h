#pragma once

// One straight perforation line of a label area, in inches on the sheet.
struct Perf {
    // Read from the file, kept and copied, but nothing draws or prints with it.
    double Reserved = 0.0;
    double X1 = 0.0;
    double Y1 = 0.0;
    double X2 = 0.0;
    double Y2 = 0.0;
};
