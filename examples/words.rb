# Prints the words of each line of standard input with part of speech and reading, over the C interface:
#   ruby words.rb < text      (TAVO_LIBRARY names libtavo.so where the system does not find it)
require 'fiddle/import'

module Tavo
  extend Fiddle::Importer
  dlload ENV['TAVO_LIBRARY'] || 'libtavo.so.0'
  extern 'void* tavo_lexicon_open(const char*, void*, void*)'
  extern 'void* tavo_tokenizer_new(void*, void*, void*)'
  extern 'int tavo_tokenize(void*, const char*, size_t, unsigned int, void*, void*)'
  Failure = struct ['size_t size', 'int code', 'char text[2044]']
  Tokens = struct ['size_t size', 'size_t text_count', 'size_t token_count', 'void* first_of_text', 'void* start',
                   'void* finish', 'void* word', 'void* flags', 'void* char_begin', 'void* char_end', 'void* utf16_begin',
                   'void* utf16_end', 'void* cost', 'void* kind', 'void* pos', 'void* pos_fields',
                   'void* conjugation_type', 'void* conjugation_form', 'void* base', 'void* reading',
                   'void* pronunciation', 'void* normalized', 'void* annotation', 'void* additional',
                   'size_t string_count', 'void* string_offsets', 'void* string_bytes', 'long long string_version',
                   'void* connection_cost', 'void* word_cost', 'void* plain_text', 'size_t plain_text_bytes']
  POS = 0x1
  READING = 0x20
end

$failure = Tavo::Failure.malloc(Fiddle::RUBY_FREE)
$failure.size = Tavo::Failure.size

def checked(fine)
  abort $failure.text.pack('c*').force_encoding('UTF-8').delete("\0") unless fine
  fine
end

def numbers(column, count) = column[0, 4 * count].unpack('L*')

lexicon = checked(Tavo.tavo_lexicon_open(nil, nil, $failure).then { |made| made.null? ? nil : made })
tokenizer = checked(Tavo.tavo_tokenizer_new(lexicon, nil, $failure).then { |made| made.null? ? nil : made })
tokens = Tavo::Tokens.malloc(Fiddle::RUBY_FREE)
tokens.size = Tavo::Tokens.size
$stdin.binmode.each_line(chomp: true) do |line|
  checked(Tavo.tavo_tokenize(tokenizer, line, line.bytesize, Tavo::POS | Tavo::READING, tokens, $failure).zero?)
  offsets = numbers(tokens.string_offsets, tokens.string_count + 1)
  text = ->(number) { tokens.string_bytes[offsets[number], offsets[number + 1] - offsets[number]] }
  columns = %i[start finish pos reading].map { |name| numbers(tokens[name.to_s], tokens.token_count) }
  columns.transpose.each do |first, last, pos, reading|
    puts [line.byteslice(first...last), text[pos], text[reading]].join("\t".b)
  end
end
