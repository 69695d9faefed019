#include <gtest/gtest.h>

#include <QObject>
#include <QStringList>
#include <functional>
#include <utility>

#include "qxbase/control/source_filters.h"

using namespace qx;

namespace {

// Logs "<tag><operation>" for each call and answers as scripted.
class TScriptedFilter : public TKSSourceFilterBase {
public:
    TScriptedFilter(QString tag, QStringList& log, int& alive) : FTag(std::move(tag)), FLog(log), FAlive(alive)
    {
        ++FAlive;
    }
    ~TScriptedFilter() override { --FAlive; }

    bool FilterSourceList(QStringList& Sources, bool& Handled, TKSDeviceExchangeMethod Method) override
    {
        FLog << FTag + "F" + QString::number(Method);
        if (OnFilter)
            OnFilter();
        Sources << FTag;
        Handled = Handled || SetsHandled;
        return Filters;
    }
    bool RTCheckSources(const std::vector<QObject*>& Sources, TKSDeviceExchangeMethod Method) override
    {
        FLog << FTag + "R" + QString::number(Method) + ":" + QString::number(Sources.size());
        return Checks;
    }
    void GetContainedSources(const QStringList& Names, std::vector<QObject*>& Sources) override
    {
        FLog << FTag + "G" + Names.join(',');
        Sources.push_back(Contained);
    }

    bool Filters = false;
    bool SetsHandled = false;
    bool Checks = false;
    QObject* Contained = nullptr;
    std::function<void()> OnFilter;

private:
    QString FTag;
    QStringList& FLog;
    int& FAlive;
};

class SourceFilterWalk : public ::testing::Test {
protected:
    TScriptedFilter& Add(const QString& tag)
    {
        auto filter = std::make_unique<TScriptedFilter>(tag, FLog, FAlive);
        TScriptedFilter& result = *filter;
        FFilters->RegisterFilter(std::move(filter));
        return result;
    }

    QStringList FLog;
    int FAlive = 0;
    std::unique_ptr<TKSSourceFilters> FFilters = std::make_unique<TKSSourceFilters>();
};

TEST_F(SourceFilterWalk, WithoutFiltersNothingIsFilteredOrChecked)
{
    QStringList names{QStringLiteral("AI 1")};
    bool handled = true;
    EXPECT_FALSE(FFilters->FilterSource(names, handled, sfmAlwaysEchange));
    EXPECT_FALSE(handled);
    EXPECT_EQ(names, QStringList{"AI 1"});
    EXPECT_FALSE(FFilters->RTCheckSources({}, sfmNeverExchange));
}

TEST_F(SourceFilterWalk, FilteringStopsAtTheFirstFilterThatFiltersOrHandles)
{
    Add("A");
    Add("B").Filters = true;
    Add("C");
    QStringList names;
    bool handled = true;
    EXPECT_TRUE(FFilters->FilterSource(names, handled, sfmNeverExchange));
    EXPECT_FALSE(handled);
    EXPECT_EQ(FLog, QStringList({"AF1", "BF1"}));
    EXPECT_EQ(names, QStringList({"A", "B"}));

    // A filter that only handles ends the walk too, and the result stays false.
    FLog.clear();
    FFilters = std::make_unique<TKSSourceFilters>();
    Add("A").SetsHandled = true;
    Add("B").Filters = true;
    EXPECT_FALSE(FFilters->FilterSource(names, handled, sfmExchangeIfPossible));
    EXPECT_TRUE(handled);
    EXPECT_EQ(FLog, QStringList({"AF0"}));
}

TEST_F(SourceFilterWalk, RunTimeCheckStopsAtTheFirstYesAndContainedAsksEveryone)
{
    QObject first;
    QObject second;
    Add("A").Contained = &first;
    Add("B").Checks = true;
    Add("C").Contained = &second;
    EXPECT_TRUE(FFilters->RTCheckSources({&first, &second}, sfmAlwaysEchange));
    EXPECT_EQ(FLog, QStringList({"AR2:2", "BR2:2"}));

    FLog.clear();
    std::vector<QObject*> sources{nullptr};
    FFilters->GetContainedMeasureSources({"x", "y"}, sources);
    EXPECT_EQ(FLog, QStringList({"AGx,y", "BGx,y", "CGx,y"}));
    EXPECT_EQ(sources, (std::vector<QObject*>{nullptr, &first, nullptr, &second}));
}

TEST_F(SourceFilterWalk, FilterRegisteredDuringAWalkIsAskedAndAllAreFreedWithTheList)
{
    bool added = false;
    Add("A").OnFilter = [&] {
        if (std::exchange(added, true))
            return;
        for (int i = 0; i < 20; ++i)  // enough to move the list's storage
            Add("N" + QString::number(i));
    };
    FFilters->RegisterFilter(nullptr);
    QStringList names;
    bool handled = false;
    EXPECT_FALSE(FFilters->FilterSource(names, handled, sfmNeverExchange));
    EXPECT_EQ(FFilters->GetFilterCount(), 21);
    EXPECT_EQ(FLog.size(), 21);
    EXPECT_EQ(FLog.back(), "N19F1");

    FFilters.reset();
    EXPECT_EQ(FAlive, 0);
}

}  // namespace
