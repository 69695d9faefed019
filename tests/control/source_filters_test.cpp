#include <gtest/gtest.h>

#include <QObject>
#include <QStringList>

#include "qxbase/control/source_filters.h"

using namespace qx;

namespace {

// Logs "<tag><operation><method>" and answers as scripted; on its first filter call it
// registers Spawn more filters.
struct TScriptedFilter : TKSSourceFilterBase {
    TScriptedFilter(TKSSourceFilters& owner, QStringList& log, QString tag) : Owner(owner), Log(log), Tag(tag) {}

    bool FilterSourceList(QStringList&, bool& handled, TKSDeviceExchangeMethod method) override
    {
        Log << Tag + "F" + QString::number(method);
        for (; Spawn > 0; --Spawn)
            Owner.RegisterFilter(std::make_unique<TScriptedFilter>(Owner, Log, "N"));
        handled = handled || Handles;
        return Filters;
    }
    bool RTCheckSources(const std::vector<QObject*>&, TKSDeviceExchangeMethod method) override
    {
        Log << Tag + "R" + QString::number(method);
        return Checks;
    }
    void GetContainedSources(const QStringList&, std::vector<QObject*>& sources) override
    {
        Log << Tag + "G";
        sources.push_back(nullptr);
    }

    TKSSourceFilters& Owner;
    QStringList& Log;
    QString Tag;
    bool Filters = false, Handles = false, Checks = false;
    int Spawn = 0;
};

class SourceFilterWalk : public ::testing::Test {
protected:
    TScriptedFilter& Add(const QString& tag)
    {
        auto filter = std::make_unique<TScriptedFilter>(FFilters, FLog, tag);
        TScriptedFilter& added = *filter;
        FFilters.RegisterFilter(std::move(filter));
        return added;
    }
    bool Filter(bool& handled, TKSDeviceExchangeMethod method = sfmNeverExchange)
    {
        FLog.clear();
        QStringList names;
        handled = true;
        return FFilters.FilterSource(names, handled, method);
    }

    TKSSourceFilters FFilters;
    QStringList FLog;
};

TEST_F(SourceFilterWalk, FilteringStopsAtTheFirstFilterThatFiltersOrHandles)
{
    bool handled = true;
    EXPECT_FALSE(Filter(handled));
    EXPECT_FALSE(handled) << "cleared even without filters";

    Add("A");
    TScriptedFilter& b = Add("B");
    b.Filters = true;
    Add("C");
    EXPECT_TRUE(Filter(handled, sfmAlwaysEchange));
    EXPECT_FALSE(handled);
    EXPECT_EQ(FLog, QStringList({"AF2", "BF2"}));

    b.Filters = false;
    b.Handles = true;
    EXPECT_FALSE(Filter(handled));
    EXPECT_TRUE(handled);
    EXPECT_EQ(FLog, QStringList({"AF1", "BF1"}));
}

TEST_F(SourceFilterWalk, RunTimeCheckStopsAtTheFirstYesAndContainedAsksEveryone)
{
    EXPECT_FALSE(FFilters.RTCheckSources({}, sfmNeverExchange));
    Add("A");
    Add("B").Checks = true;
    Add("C");
    EXPECT_TRUE(FFilters.RTCheckSources({}, sfmExchangeIfPossible));
    std::vector<QObject*> sources(1);
    FFilters.GetContainedMeasureSources({"x"}, sources);
    EXPECT_EQ(FLog, QStringList({"AR0", "BR0", "AG", "BG", "CG"}));
    EXPECT_EQ(sources.size(), 4u) << "appended, not replaced";
}

TEST_F(SourceFilterWalk, FilterRegisteredDuringAWalkIsAsked)
{
    Add("A").Spawn = 20;  // enough to move the list's storage
    FFilters.RegisterFilter(nullptr);
    bool handled = false;
    EXPECT_FALSE(Filter(handled));
    EXPECT_EQ(FFilters.GetFilterCount(), 21);
    EXPECT_EQ(FLog.size(), 21);
}

}  // namespace
