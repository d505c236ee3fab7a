#pragma once

#include <span>
#include <utility>

#include "model/Mesh.h"

namespace kestol {

/// Elements of one mesh to work on: all of them, or chosen ones. Walked like the elements of a
/// mesh, in their order:
///
///     for (const auto [number, elem] : part.elems) ...
class MeshPart {
public:
  class Elements {
  public:
    explicit Elements(const Mesh& mesh) : all_(&mesh.elems) {}
    explicit Elements(std::span<Elem* const> chosen) : chosen_(chosen) {}

    class Iterator {
    public:
      using value_type = std::pair<int, Elem*>;
      explicit Iterator(Plex<Elem>::Iterator place) : place_(place) {}
      explicit Iterator(Elem* const* chosen) : chosen_(chosen) {}
      value_type operator*() const {
        return chosen_ == nullptr ? *place_ : value_type{(*chosen_)->number, *chosen_};
      }
      Iterator& operator++() {
        if (chosen_ == nullptr)
          ++place_;
        else
          ++chosen_;
        return *this;
      }
      bool operator!=(const Iterator& other) const {
        return chosen_ != other.chosen_ || place_ != other.place_;
      }

    private:
      Plex<Elem>::Iterator place_;
      Elem* const* chosen_ = nullptr;
    };
    Iterator begin() const {
      return all_ != nullptr ? Iterator(all_->begin()) : Iterator(chosen_.data());
    }
    Iterator end() const {
      return all_ != nullptr ? Iterator(all_->end()) : Iterator(chosen_.data() + chosen_.size());
    }

  private:
    const Plex<Elem>* all_ = nullptr;  ///< null: the chosen ones
    std::span<Elem* const> chosen_;
  };

  /// The whole mesh.
  MeshPart(const Mesh& whole)  // NOLINT(google-explicit-constructor)
      : MeshPart(whole, Elements(whole)) {}
  /// The chosen elements of `owner`, in its order; the list must outlive the part.
  MeshPart(const Mesh& owner, std::span<Elem* const> chosen) : MeshPart(owner, Elements(chosen)) {}

  const Mesh& mesh;
  const int elemType;  ///< of the mesh, like nnode
  const int nnode;
  const Elements elems;

private:
  MeshPart(const Mesh& owner, const Elements& elements)
      : mesh(owner), elemType(owner.elemType), nnode(owner.nnode), elems(elements) {}
};

}  // namespace kestol
