function out = nestedBlockComments(in)
%NESTEDBLOCKCOMMENTS Block comments, nested and with odd content.
%{
This whole paragraph is a block comment.
    out = in * 2;    % would run if it were not commented out
%{
    A nested block: it ends at its own closing line, and the outer
    block goes on after it.
    if (  % unbalanced on purpose
%}
    Still inside the outer block: ) ] } end function classdef
%}
out = in;
  %{
  An indented block comment.
  %}
out = out + 1; % after the block

    %{
    x = 'unterminated
      %{
        deeper %{ not an opener: text follows it
      %}
    %}
out = out * 2;
%{ not a block opener because text follows
out = out - 1;
end
