#pragma once

/// Indexed container of object pointers keyed by positive numbers with gaps. It does not own the
/// objects.
class VoidPlex {
public:
  explicit VoidPlex(int blockSize);
  ~VoidPlex();
  VoidPlex(const VoidPlex&) = delete;
  VoidPlex& operator=(const VoidPlex&) = delete;

  void Insert(int index, void* object);
  void Set(int index, void* object);
  int Add(void* object);
  void* Get(int index) const;
  bool IsEmpty(int index) const;
  void* Next(int& cursor) const;
  int Trim();
  void Compact();
  void Clear();

  int lowest = 0;
  int highest = 0;
};
