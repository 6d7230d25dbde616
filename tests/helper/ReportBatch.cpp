// Many runs of the report in one program, for comparisons of thousands of logs.
//
// Standard input holds the runs one after the other: the number of arguments, a line feed, and each argument
// with a NUL behind it. Each is answered with a line "STATUS SIZE SIZE", the bytes that went to standard
// output and those that went to standard error.
#include "report/ReportRun.h"

#include <iostream>
#include <sstream>
#include <string>
#include <vector>

int main() {
    std::ios::sync_with_stdio(false);
    std::string line;
    while (std::getline(std::cin, line)) {
        std::vector<std::string> arguments(std::stoul(line));
        for (std::string& argument : arguments) {
            std::getline(std::cin, argument, '\0');
        }
        std::ostringstream out;
        std::ostringstream err;
        const int status = carvelot::RunReport(arguments, out, err);
        std::cout << status << ' ' << out.str().size() << ' ' << err.str().size() << '\n'
                  << out.str() << err.str() << std::flush;
    }
    return 0;
}
