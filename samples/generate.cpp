// kpsample FOLDER: writes a building-materials wholesaler's year as one CSV file per table, the same on every machine.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "Tables.h"

int main(int argc, char** argv) {
    if (argc != 2 || std::string(argv[1]).starts_with('-')) {
        std::fputs("usage: kpsample FOLDER\nWrites the sample year into FOLDER, one CSV file a table.\n", stderr);
        return 2;
    }
    try {
        using namespace kpTables::sample;
        const std::filesystem::path folder = argv[1];
        std::filesystem::create_directories(folder);
        Random random(20030101);
        const Firm firm = LoadFirm(random);
        const Calendar calendar;
        const Year year = Trade(firm, calendar, random).Run();
        const std::vector<WorkOrder> orders = DispatchYear(firm, calendar, year, random);
        WriteMasterTables(folder, firm);
        WriteMovementTables(folder, year, orders, PayYear(firm, orders));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kpsample: %s\n", error.what());
        return 1;
    }
    return 0;
}
