// Runs the manager's config writers on one folder without end, alternating
// between two records, until it is killed: the test kills it at random
// moments and checks that every file is one version or the other, whole.
// Usage: config_write_loop <folder>. Prints "writing" when it starts; the
// first round writes the second version, over what the test wrote first.
#include <iostream>

#include "config_write_records.h"

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::cerr << "usage: config_write_loop <folder>" << std::endl;
        return 2;
    }
    const std::string folder = argv[1];
    vx::test::ConfigWriteRecords records[2] = {vx::test::configWriteRecords(0), vx::test::configWriteRecords(1)};
    std::cout << "writing" << std::endl;
    for (unsigned long round = 1;; ++round) {
        if (!vx::test::writeConfigRecords(folder, records[round % 2]))
            return 1;
    }
}
