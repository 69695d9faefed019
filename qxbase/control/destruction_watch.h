#pragma once

namespace qx {

// Lets a running call learn that the object it works for was destroyed meanwhile: listeners
// called during event delivery may delete the link or the source that is calling them.
// The object holds a watch; each call that must survive its object puts a Frame on the stack.
// Frames nest (calls on one thread), so they form a chain the watch marks when it dies.
class TQXDestructionWatch {
public:
    class Frame {
    public:
        explicit Frame(TQXDestructionWatch& Watch) noexcept : FWatch(&Watch), FPrev(Watch.FTop)
        {
            Watch.FTop = this;
        }
        ~Frame()
        {
            if (!FGone) FWatch->FTop = FPrev;
        }
        Frame(const Frame&) = delete;
        Frame& operator=(const Frame&) = delete;

        // True once the watched object has been destroyed; then nothing of it may be touched.
        bool Gone() const noexcept { return FGone; }

    private:
        friend class TQXDestructionWatch;
        TQXDestructionWatch* FWatch;
        Frame* FPrev;
        bool FGone = false;
    };

    TQXDestructionWatch() noexcept = default;
    ~TQXDestructionWatch()
    {
        for (Frame* f = FTop; f != nullptr; f = f->FPrev) f->FGone = true;
    }
    TQXDestructionWatch(const TQXDestructionWatch&) = delete;
    TQXDestructionWatch& operator=(const TQXDestructionWatch&) = delete;

private:
    Frame* FTop = nullptr;
};

}  // namespace qx
