#include "qxbase/config/property_page_handler.h"

#include <QEvent>
#include <algorithm>
#include <functional>

#include "qxbase/panels/wizard_topic_label.h"
#include "qxbase/resources/config_texts.h"
#include "qxbase/sources/measure_source_lookup.h"

namespace qx {

namespace {

// A drop-down list that reports when it is about to open, whether by mouse or by keyboard.
class TDropDownComboBox : public QComboBox {
public:
    using QComboBox::QComboBox;

    void showPopup() override
    {
        if (OnDropDown)
            OnDropDown();
        QComboBox::showPopup();
    }

    std::function<void()> OnDropDown;
};

// The most channels a panel of `ChannelMode` may hold, of `SourceChannels`.
int ChannelLimit(std::uint8_t ChannelMode, int SourceChannels)
{
    return ChannelMode == 3 ? SourceChannels : std::min<int>(ChannelMode, 2);
}

}  // namespace

TKSPropertyPageHandler::TKSPropertyPageHandler(QObject* parent) : QObject(parent)
{
    FWatch.OnUpdateSettings = [this](TQXMeasureLinkEx*) {
        if (FWatching)
            FillTreeViewChannels();
    };
}

void TKSPropertyPageHandler::Watch()
{
    if (FWatch.GetSource() == FMeasureSource.data())
        return;
    // Attaching reports the source's settings at once: the fill under way covers that.
    FWatching = false;
    FWatch.SetQXMeasureSourceEx(FMeasureSource.data());
    FWatching = true;
}

TKSPropertyPageHandler::~TKSPropertyPageHandler()
{
    // Detaching may report settings; nothing of the handler may hear it now.
    FWatch.OnUpdateSettings = nullptr;
    FWatch.SetQXMeasureSourceEx(nullptr);
    if (FSourceCombo != nullptr && FSourceCombo->parent() == nullptr)
        delete FSourceCombo.data();
}

void TKSPropertyPageHandler::Create(TKSMSSink* Panel, THVKTansparentTreeView* TreeView)
{
    if (FCreated)
        return;
    FCreated = true;
    FPanel = Panel;
    FTreeView = TreeView;
    FPage = TreeView != nullptr ? TreeView->parentWidget() : nullptr;

    auto* combo = new TDropDownComboBox(FPage);
    combo->setObjectName(QStringLiteral("CBMeasureSource"));
    combo->setEditable(false);
    combo->OnDropDown = [this] { DoOnMeasureSourceComboDropDown(FSourceCombo); };
    FSourceCombo = combo;
    if (FPage != nullptr) {
        FSourceLabel = new TWizardTopicDotLabel(res::_rsMeasureSource, FPage);
        FSourceLabel->setObjectName(QStringLiteral("LabelMeasureSource"));
        FChannelsLabel = new TWizardTopicDotLabel(res::_rsChannels, FPage);
        FChannelsLabel->setObjectName(QStringLiteral("LabelChannels"));
        QWidget::setTabOrder(combo, TreeView);
        PlaceControls();
        FPage->installEventFilter(this);
    }

    if (Panel == nullptr)
        return;
    FMeasureSource = Panel->GetMeasureSource();
    for (TQXMeasureSourceEx* source : ListMeasureSources(*Panel))
        AddSource(source);
    if (FMeasureSource != nullptr)
        combo->setCurrentIndex(combo->findText(FMeasureSource->GetObjectDescription(), Qt::MatchFixedString | Qt::MatchCaseSensitive));
    // activated, not currentIndexChanged: only the user's choice connects the panel.
    connect(combo, &QComboBox::activated, this, [this] { OnChange(FSourceCombo); });
    if (TreeView != nullptr) {
        connect(TreeView, &THVKTansparentTreeView::itemCheckClicked, this,
                [this](int Index, THVKTreeViewItemStates State) { DoOnClickTreeviewChannel(FTreeView, Index, State); });
        connect(TreeView, &THVKTansparentTreeView::tooManyChecked, this, [this] { DoOnToMuchChannels(FTreeView); });
        TreeView->SetAutoExpand(false);
    }
    FillTreeViewChannels();
}

void TKSPropertyPageHandler::SetMeasureSource(TQXMeasureSourceEx* Source)
{
    FMeasureSource = Source;
    FillTreeViewChannels();
}

void TKSPropertyPageHandler::FillTreeViewChannels()
{
    Watch();
    if (FTreeView == nullptr)
        return;
    FTreeView->Clear();
    if (FMeasureSource == nullptr)
        return;
    const int count = FMeasureSource->GetChannelListCount();
    FTreeView->SetMaxChecked(FPanel != nullptr ? ChannelLimit(FPanel->GetChannelMode(), count) : 0);
    std::vector<THVKTreeViewItemRecord> items(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const TQXMSExChannelInformation* info = FMeasureSource->GetChannelList(i);
        // Channel names travel as short strings.
        items[static_cast<std::size_t>(i)] = {info != nullptr ? info->Name.left(255) : QString(), 0, i};
    }
    for (int i = 0; FPanel != nullptr && i < FPanel->GetChannelCount(); ++i) {
        const int channel = FPanel->GetChannelArray(i);
        if (channel >= 0 && channel < count)
            items[static_cast<std::size_t>(channel)].Checked = 1;
    }
    if (count > 0)
        FTreeView->AddItems(items);
}

void TKSPropertyPageHandler::OnChange(QObject* Sender)
{
    Q_UNUSED(Sender);
    if (FSourceCombo == nullptr)
        return;
    const int selected = FSourceCombo->currentIndex();
    if (selected < 0 || static_cast<std::size_t>(selected) >= FSources.size())
        return;
    FMeasureSource = FSources[static_cast<std::size_t>(selected)];
    FillTreeViewChannels();
    if (FPanel != nullptr) {
        FPanel->SetMeasureSource(FMeasureSource);
        emit panelChanged();
    }
}

void TKSPropertyPageHandler::DoOnMeasureSourceComboDropDown(QObject* Sender)
{
    Q_UNUSED(Sender);
    if (FSourceCombo == nullptr)
        return;
    const QString former = FSourceCombo->currentText();
    FSourceCombo->clear();
    FSources.clear();
    if (FPanel != nullptr)
        for (TQXMeasureSourceEx* source : ListMeasureSources(*FPanel))
            if (source->objectName() != FPanel->objectName())
                AddSource(source);
    FSourceCombo->setCurrentIndex(FSourceCombo->findText(former, Qt::MatchFixedString | Qt::MatchCaseSensitive));
}

void TKSPropertyPageHandler::DoOnClickTreeviewChannel(QObject* Sender, int Index, THVKTreeViewItemStates State)
{
    Q_UNUSED(Sender);
    const bool handled = Index >= 0 && !FTooMany && FPanel != nullptr;
    FTooMany = false;
    if (!handled)
        return;
    TKSMSSink& panel = *FPanel;
    const int held = panel.GetChannelCount();
    if (State == tvisChecked) {
        panel.ChannelAdd(Index);
    } else if (held >= 2) {
        std::vector<int> kept;
        for (int i = 0; i < held; ++i)
            if (const int channel = panel.GetChannelArray(i); channel != Index)
                kept.push_back(channel);
        panel.ChannelClear();
        panel.ChannelAddMultiple(kept);
    } else if (held == 1) {
        // One channel held: whichever box was unchecked, it was the one.
        panel.ChannelClear();
    } else {
        return;
    }
    panel.ChannelListChanged();
    emit panelChanged();
}

void TKSPropertyPageHandler::DoOnToMuchChannels(QObject* Sender)
{
    Q_UNUSED(Sender);
    FTooMany = true;
}

bool TKSPropertyPageHandler::eventFilter(QObject* Watched, QEvent* Event)
{
    if (Watched == FPage && (Event->type() == QEvent::Resize || Event->type() == QEvent::Show))
        PlaceControls();
    return QObject::eventFilter(Watched, Event);
}

void TKSPropertyPageHandler::AddSource(TQXMeasureSourceEx* Source)
{
    FSourceCombo->addItem(Source->GetObjectDescription());
    FSources.emplace_back(Source);
}

void TKSPropertyPageHandler::PlaceControls()
{
    if (FPage == nullptr)
        return;
    // Headings at 16 and the controls under them at 32 from the left, 8 pixels between rows and
    // to the right and bottom edges; the tree takes what height is left.
    const int width = FPage->width();
    int top = 16;
    auto place = [&](QWidget* Control, int Left, bool Fill) {
        if (Control == nullptr)
            return;
        const int height = Fill ? std::max(0, FPage->height() - top - 8) : Control->sizeHint().height();
        Control->setGeometry(Left, top, std::max(0, width - 8 - Left), height);
        top += height + 8;
    };
    place(FSourceLabel, 16, false);
    place(FSourceCombo, 32, false);
    place(FChannelsLabel, 16, false);
    place(FTreeView, 32, true);
}

}  // namespace qx
