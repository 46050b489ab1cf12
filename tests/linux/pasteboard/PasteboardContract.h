#pragma once

#include "linux/pasteboard/PasteboardBed.h"

#include <functional>

namespace nimbarrow {

/// What holds for the pasteboard on every windowing system; a test of one of them inherits it.
class PasteboardContract : public QObject {
    Q_OBJECT

public:
    using MakeBed = std::function<std::unique_ptr<PasteboardBed>()>;

    explicit PasteboardContract(MakeBed makeBed)
        : m_makeBed(std::move(makeBed))
    {
    }

private Q_SLOTS:
    void seesWhatOtherProgramsCopy();
    void doesNotAnnounceWhatWasThere();
    void neverAsksForASecret_data();
    void neverAsksForASecret();
    void asksForNothingItDoesNotNeed();
    void survivesAnOwnerThat_data();
    void survivesAnOwnerThat();
    void cutsAHugeTextWhileTheLoopGoesOn();
    void fortyQuickCopiesAreFortySnapshots();
    void givesItsTextToOtherPrograms();
    void givesItsFilesAndABigImageToOtherPrograms();
    void doesNotWaitForAnImageThatASecondWriteReplaces();
    void treatsATooLargeImageAsAbsent();
    void refusesAListThatIsTooLong();
    void announcesACopyThatItsOwnWriteOvertook();
    void isSilentWithoutAServer();

private:
    struct Fixture;

    MakeBed m_makeBed;
};

} // namespace nimbarrow
