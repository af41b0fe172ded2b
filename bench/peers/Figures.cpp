#include "bench/peers/Figures.h"

#include <cstdio>
#include <iostream>
#include <stdexcept>

namespace vistrel::bench {
namespace {

std::string joined(std::initializer_list<std::string> values) {
  std::string row;
  for (const std::string& value : values) row += (row.empty() ? "" : ",") + value;
  return row;
}

}  // namespace

Figures::Figures(const std::filesystem::path& file, std::initializer_list<std::string> headings)
    : name_(file.stem().string()) {
  std::filesystem::create_directories(file.parent_path());
  file_.open(file);
  if (!file_) throw std::runtime_error("cannot write " + file.string());
  file_ << joined(headings) << std::endl;
}

void Figures::add(std::initializer_list<std::string> values) {
  const std::string row = joined(values);
  file_ << row << std::endl;
  std::cout << name_ << ": " << row << std::endl;
}

std::string figure(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.3f", value);
  return text;
}

}  // namespace vistrel::bench
