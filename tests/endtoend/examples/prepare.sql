-- The rows that examples name and the sample year lacks.
Insert Into 操作员 (姓名) Values ('李明');
