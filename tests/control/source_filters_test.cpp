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

TScriptedFilter& Add(TKSSourceFilters& filters, QStringList& log, const QString& tag)
{
    auto filter = std::make_unique<TScriptedFilter>(filters, log, tag);
    TScriptedFilter& added = *filter;
    filters.RegisterFilter(std::move(filter));
    return added;
}

}  // namespace

TEST(SourceFilters, WalksStopAtTheFirstFilterThatAnswersAndContainedAsksEveryone)
{
    TKSSourceFilters filters;
    QStringList log;
    QStringList names;
    bool handled = true;
    EXPECT_FALSE(filters.FilterSource(names, handled, sfmNeverExchange));
    EXPECT_FALSE(handled) << "cleared even without filters";
    EXPECT_FALSE(filters.RTCheckSources({}, sfmNeverExchange));

    Add(filters, log, "A");
    TScriptedFilter& b = Add(filters, log, "B");
    Add(filters, log, "C");
    b.Filters = b.Checks = true;
    EXPECT_TRUE(filters.FilterSource(names, handled, sfmAlwaysEchange));
    EXPECT_TRUE(filters.RTCheckSources({}, sfmExchangeIfPossible));
    b.Filters = false;
    b.Handles = true;
    EXPECT_FALSE(filters.FilterSource(names, handled, sfmNeverExchange));
    EXPECT_TRUE(handled);
    std::vector<QObject*> sources(1);
    filters.GetContainedMeasureSources({"x"}, sources);
    EXPECT_EQ(sources.size(), 4u) << "appended, not replaced";
    EXPECT_EQ(log, QStringList({"AF2", "BF2", "AR0", "BR0", "AF1", "BF1", "AG", "BG", "CG"}));
}

TEST(SourceFilters, FilterRegisteredDuringAWalkIsAsked)
{
    TKSSourceFilters filters;
    QStringList log;
    Add(filters, log, "A").Spawn = 20;  // enough to move the list's storage
    filters.RegisterFilter(nullptr);
    QStringList names;
    bool handled = false;
    EXPECT_FALSE(filters.FilterSource(names, handled, sfmNeverExchange));
    EXPECT_EQ(filters.GetFilterCount(), 21);
    EXPECT_EQ(log.size(), 21);
}
