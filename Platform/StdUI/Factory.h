#pragma once

// Deferred creation: a tab widget holds a factory instead of a page and creates the page the
// first time the tab is shown. `create()` builds the widget (owned by the caller);
// `afterSetParent()` runs once the widget has its parent in the widget tree.

namespace vx_std_ui {

template <typename T, typename Arg = void> class TIFactory
{
public:
    virtual ~TIFactory() = default;
    virtual T* create(const Arg& arg) const = 0;
    virtual void afterSetParent(T* widget) const { (void)widget; }
};

template <typename T> class TIFactory<T, void>
{
public:
    virtual ~TIFactory() = default;
    virtual T* create() const = 0;
    virtual void afterSetParent(T* widget) const { (void)widget; }
};

} // namespace vx_std_ui
