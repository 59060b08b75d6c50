#include "engine/TestSystems.h"

std::vector<std::string> systemJournal;

void TestGroundSystem::step()
{
    systemJournal.push_back("run ground");
}

void TestGroundSystem::systemStartup()
{
    systemJournal.push_back("start ground");
}

void TestGroundSystem::systemShutdown()
{
    systemJournal.push_back("stop ground");
}

UpdaterList TestGroundSystem::getUpdaters()
{
    return {Updater(SCS("TestGroundSystem::step"), bind(SCS("step")), 500, true)};
}

void TestFloorSystem::systemStartup()
{
    systemJournal.push_back("start floor");
}

void TestFloorSystem::systemShutdown()
{
    systemJournal.push_back("stop floor");
}

System::DependencyList TestFloorSystem::systemDependencies()
{
    return {TestGroundSystem::staticType};
}

void TestRoofSystem::systemStartup()
{
    systemJournal.push_back("start roof");
}

void TestRoofSystem::systemShutdown()
{
    systemJournal.push_back("stop roof");
}

System::DependencyList TestRoofSystem::systemDependencies()
{
    return {TestFloorSystem::staticType, TestGroundSystem::staticType};
}
