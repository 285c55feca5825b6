#pragma once
#include "platform/base/Exceptions.h"

#include <map>

// Controls that share a name and differ by Index, reached as Name(index). An index with
// no member throws OutOfBoundsException.
template <class T>
class ControlArray {
public:
    T* operator()(int index) const
    {
        auto it = members_.find(index);
        if (it == members_.end())
            throw OutOfBoundsException();
        return it->second;
    }
    void add(int index, T* control) { members_[index] = control; }
    int indexOf(const T* control) const
    {
        for (auto& [i, c] : members_)
            if (c == control)
                return i;
        return -1;
    }
    auto begin() const { return members_.begin(); }
    auto end() const { return members_.end(); }
    int count() const { return int(members_.size()); }

private:
    std::map<int, T*> members_;
};
